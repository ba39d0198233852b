// Without libFuzzer a fuzz target is this program: it runs the target once on
// each file of the folders (or the files) it is given, such as its seed
// corpus, so that an ordinary test run checks the seeds.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

void runOn(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in),
                                  std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char **argv)
{
    int runs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path(argv[i]);
        if (std::filesystem::is_directory(path)) {
            for (const auto &entry : std::filesystem::directory_iterator(path)) {
                if (entry.is_regular_file()) {
                    runOn(entry.path());
                    ++runs;
                }
            }
        } else {
            runOn(path);
            ++runs;
        }
    }
    std::printf("%d inputs run\n", runs);
    return runs > 0 ? 0 : 1;
}
