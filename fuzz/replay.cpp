// Runs the fuzz target over the files given on the command line (the corpus): the same checks
// without the fuzzing engine, for every build. A file is taken as the device's text, and as the
// F5 text it is merged into (a file that holds a NUL, a .seed file, gives the table before it and
// the F5 text after it); every section runs on it in both directions, in record mode, in
// text mode (with a buffer of exactly the text's size and one with room), in a mode no section
// accepts and on channel -1 with a current reply.
#include "fuzz_input.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    // Control bytes: flags (direction, mode, channel, standard, sub-mode, current) and capacity.
    struct Pick {
        unsigned char flags;
        unsigned char capacity;
    };
    constexpr Pick kPicks[] = {
        {0x00, 64}, {0x01, 64}, {0x02, 64}, {0x02, 200},
        {0x03, 64}, {0x04, 64}, {0xD8, 64}, {0xF9, 64},
    };
    int ran = 0;
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "replay: %s: cannot open\n", argv[i]);
            return 2;
        }
        const std::string bytes{std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>()};
        for (std::size_t s = 0; s < protofix::fuzz::kSectionCount; ++s) {
            for (const Pick& pick : kPicks) {
                std::string input;
                input += static_cast<char>(s);
                input += static_cast<char>(pick.flags);
                input += static_cast<char>(pick.capacity);
                input += bytes;
                input += '\0';
                input += bytes;
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()),
                                       input.size());
                ++ran;
            }
        }
    }
    std::printf("replay: %d inputs\n", ran);
    return 0;
}
