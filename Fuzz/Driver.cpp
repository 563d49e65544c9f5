// Stands in for libFuzzer: a bounded number of inputs, the same ones in every run.
//   <target> [COUNT]    runs the seeds and so many inputs that mutation makes of them
//   <target> FILE…      runs the files' contents, to look into a failure

#include "Fuzz.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

constexpr long usualCount = 200000;
constexpr std::size_t longestInput = 4096;

std::string current;

/// Shows the input that did it; only calls what a signal handler may.
void showInput(int) {
  constexpr std::string_view title = "\nThe input was:\n";
  (void)!::write(STDERR_FILENO, title.data(), title.size());
  (void)!::write(STDERR_FILENO, current.data(), current.size());
  std::_Exit(EXIT_FAILURE);
}

void run(std::string input) {
  current = std::move(input);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(current.data()), current.size());
}

class Mutator {
 public:
  explicit Mutator(std::span<const std::string_view> seeds) : seeds_(seeds.begin(), seeds.end()) {}

  std::string next() {
    std::string input = any();
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) change(input);
    input.resize(std::min(input.size(), longestInput));
    // Now and then a mutant replaces another, so that changes add up; the seeds stay.
    if (below(8) == 0) (mutants_.size() < 200 ? mutants_.emplace_back() : anyMutant()) = input;
    return input;
  }

 private:
  std::size_t below(std::size_t bound) { return generator_() % bound; }
  std::string& anyMutant() { return mutants_[below(mutants_.size())]; }
  const std::string& any() {
    return mutants_.empty() || below(4) != 0 ? seeds_[below(seeds_.size())] : anyMutant();
  }

  void change(std::string& input) {
    const std::size_t at = below(input.size() + 1);
    const std::size_t length = std::min(below(16), input.size() - at);
    switch (below(10)) {
      case 0:
        input.erase(at, length);
        break;
      case 1:
        input.insert(at, input.substr(at, length));
        break;
      case 2:
        input.insert(at, 1, static_cast<char>(generator_()));
        break;
      case 3:
        input.replace(at, length, 1, R"({}[]",:\-+.e0123456789TZ$_ )"[below(27)]);
        break;
      case 4:
        input.replace(at, length, number());
        break;
      case 5:
        input.resize(at);
        break;
      case 6:
        splice(input, at);
        break;
      default:
        exchangeToken(input, at);
        break;
    }
  }

  std::string number() {
    constexpr const char* numbers[] = {"-0.0",
                                       "9223372036854775808",
                                       "9223372036854775807",
                                       "1e308",
                                       "-9223372036854775808",
                                       "1e999",
                                       "-1e-320",
                                       "0.5"};
    return below(2) == 0 ? numbers[below(std::size(numbers))] : std::to_string(generator_());
  }

  void splice(std::string& input, std::size_t at) {
    const std::string& other = any();
    const std::size_t from = below(other.size() + 1);
    input.insert(at, other, from, below(other.size() - from + 1));
  }

  /// What stands between two marks of punctuation, by what stands so in another input: most of the
  /// results are still well formed.
  void exchangeToken(std::string& input, std::size_t at) {
    const std::string& other = any();
    const auto [from, length] = tokenAround(other, below(other.size() + 1));
    const std::string token = other.substr(from, length);
    const auto [start, replaced] = tokenAround(input, at);
    input.replace(start, replaced, token);
  }

  /// Its start and length.
  static std::pair<std::size_t, std::size_t> tokenAround(std::string_view text, std::size_t at) {
    constexpr std::string_view marks = ",:[]{}";
    const std::size_t before = at == 0 ? text.npos : text.find_last_of(marks, at - 1);
    const std::size_t start = before == text.npos ? 0 : before + 1;
    return {start, std::min(text.find_first_of(marks, at), text.size()) - start};
  }

  std::mt19937_64 generator_{20240307};
  std::vector<std::string> seeds_;
  std::vector<std::string> mutants_;
};

/// The COUNT; absent for a file's name.
std::optional<long> countIn(std::string_view argument) {
  long count = 0;
  const auto [end, failure] = std::from_chars(argument.begin(), argument.end(), count);
  return failure == std::errc() && end == argument.end() ? std::optional(count) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  const auto count = argc == 2 ? countIn(argv[1]) : std::nullopt;
  const long inputCount = count.value_or(usualCount);
  for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGILL}) std::signal(signal, showInput);
  for (int i = 1; i < argc && !count; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    run({std::istreambuf_iterator<char>(file), {}});
  }
  if (argc > 1 && !count) return EXIT_SUCCESS;
  const auto seeds = fuzzSeeds();
  for (const std::string_view seed : seeds) run(std::string(seed));
  Mutator mutator(seeds);
  for (long i = 0; i < inputCount; ++i) run(mutator.next());
  std::printf("%zu seeds and %ld inputs\n", seeds.size(), inputCount);
}
