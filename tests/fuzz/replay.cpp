// Runs a fuzz target over kept inputs, whole, cut short at every place, and with every byte turned:
// replay FOLDER...
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

/// Cutting and turning costs the square of the length; longer ones take it at fewer places.
constexpr std::size_t places = 512;

void run(const std::string& input) {
  // A copy of just that size: a sanitizer sees a read beyond its end.
  const std::string exact(input.data(), input.size());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(exact.data()), exact.size());
}

void runVariants(const std::string& input) {
  run(input);
  const std::size_t step = input.size() / places + 1;
  for (std::size_t at = 0; at < input.size(); at += step) {
    run(input.substr(0, at));
    std::string turned = input;
    turned[at] = static_cast<char>(turned[at] ^ 0x80);
    run(turned);
    run(input.substr(0, at) + input.substr(at + 1));
  }
}

}  // namespace

int main(int count, char** arguments) {
  int inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
      std::ifstream file(entry.path(), std::ios::binary);
      std::printf("%s\n", entry.path().c_str());
      std::fflush(stdout);
      runVariants(std::string(std::istreambuf_iterator<char>(file), {}));
      ++inputs;
    }
  }
  std::printf("%d inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
