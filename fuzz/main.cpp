// Runs a fuzz target without a fuzzer: on the named files (to replay a crash), or on generated input.
//   fuzz_NAME FILE ...
//   fuzz_NAME --random COUNT [SEED]

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int replay(const char* name) {
    std::ifstream file(name, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", name);
        return 1;
    }
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    return LLVMFuzzerTestOneInput(data.data(), data.size());
}

// Input number i depends on the seed and on i alone: "--random 1 SEED+i" repeats it.
void runRandom(unsigned long count, unsigned long seed) {
    std::printf("seeds %lu to %lu\n", seed, seed + count - 1);
    for (unsigned long i = 0; i < count; ++i) {
        std::mt19937 random(static_cast<std::mt19937::result_type>(seed + i));
        std::vector<std::uint8_t> data(random() % 4096);
        for (std::uint8_t& byte : data) byte = static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(data.data(), data.size());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::string(argv[1]) == "--random") {
        runRandom(std::strtoul(argv[2], nullptr, 10), argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 1);
        return 0;
    }
    int failures = 0;
    for (int i = 1; i < argc; ++i) failures += replay(argv[i]) != 0;
    return failures == 0 ? 0 : 1;
}
