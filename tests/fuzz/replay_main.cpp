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

int main(int argc, char **argv)
{
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i]))
            files.emplace_back(argv[i]);
        else
            for (const auto &entry : std::filesystem::directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
    }
    for (const auto &file : files) {
        std::ifstream in(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs run\n", files.size());
    return files.empty() ? 1 : 0;
}
