#include <velmor/velmor.h>

#include <iostream>

int main() {
    velmor::Outcome<velmor::Engine> engine = velmor::Engine::make();
    if (!engine) return 1;
    velmor::Properties properties;
    properties.setText("Name", "Ada");
    const velmor::Evaluated letter = engine.value().evaluate("Dear <KV:TAG>PROPERTY:Name=x:</KV>", properties);
    std::cout << velmor::utf8(letter.text) << "\n";
}
