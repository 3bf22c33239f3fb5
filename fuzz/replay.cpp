// Runs the fuzz target over the files given on the command line (the corpus): the same checks
// without the fuzzing engine, for every build.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int ran = 0;
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "replay: %s: cannot open\n", argv[i]);
            return 2;
        }
        const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        // Every first byte: each section, each mode and each direction on the same text.
        for (unsigned int pick = 0; pick < 256; ++pick) {
            std::string input = bytes;
            input.insert(input.begin(), static_cast<char>(pick));
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
            ++ran;
        }
    }
    std::printf("replay: %d inputs\n", ran);
    return 0;
}
