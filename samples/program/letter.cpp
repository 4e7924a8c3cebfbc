// Makes the short letter with the C++ library:  letter TEMPLATE RESULT

#include <velmor/velmor.h>

#include <fstream>
#include <iostream>
#include <iterator>

int main(int count, char** arguments) {
    if (count != 3) return 2;
    std::ifstream file(arguments[1], std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    velmor::Outcome<velmor::Engine> engine = velmor::Engine::make();
    if (!engine || !file) return 1;

    velmor::Properties properties;
    properties.setText("Name", "Ada Lovelace");
    properties.setText("Item", "an aneroid barometer");
    const velmor::Evaluated letter = engine.value().evaluate(text, properties);
    for (const velmor::LogEntry& entry : letter.errors) std::cerr << velmor::utf8(entry.message) << "\n";

    std::ofstream(arguments[2], std::ios::binary) << velmor::utf8(letter.text);
    return letter.errors.empty() ? 0 : 3;
}
