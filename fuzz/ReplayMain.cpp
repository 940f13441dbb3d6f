// Runs a fuzz target over the files of its corpus, and over each of them cut short.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream in(entry.path(), std::ios::binary);
            std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            for (std::size_t size = bytes.size(); size > 0; size /= 2) {
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), size);
                ++count;
            }
        }
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;  // a corpus that has gone missing is no success
}
