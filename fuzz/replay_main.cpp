// replay_main.cpp - runs a fuzz target without libFuzzer, one case per file
// named on the command line (a directory stands for the files in it, in
// name order). The test suite replays the seed and regression corpora this
// way, in every build, under the sanitizers too.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    if (std::filesystem::is_directory(argv[i])) {
      const std::size_t before = files.size();
      for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
        if (entry.is_regular_file()) files.push_back(entry.path());
      std::sort(files.begin() + static_cast<std::ptrdiff_t>(before), files.end());
    } else {
      files.push_back(argv[i]);
    }
  }
  LLVMFuzzerInitialize(&argc, &argv);
  for (const auto& path : files) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
      std::fprintf(stderr, "replay: can't read %s\n", path.c_str());
      return 1;
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  // Standard output belongs to the cases (and goes nowhere).
  std::fprintf(stderr, "replay: %zu cases\n", files.size());
  return files.empty() ? 1 : 0;
}
