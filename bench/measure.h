#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

namespace zelvion::bench {

/// What a program that bench/figures starts measures, and the answer that it worked out.
struct Measure {
  /// Runs `work` again and again, for half a second in all and at least once, each time after `begin`, which
  /// is not timed.
  template <typename Begin, typename Work>
  void run(const Begin& begin, const Work& work) {
    constexpr double kSeconds = 0.5;
    constexpr int kMostRuns = 200;
    for (double all = 0; all < kSeconds && runs < kMostRuns; ++runs) {
      begin();
      const auto start = std::chrono::steady_clock::now();
      work();
      const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
      seconds = std::min(seconds, taken.count());
      all += taken.count();
    }
  }

  double seconds = std::numeric_limits<double>::infinity();
  int runs = 0;
  std::string part = "all";  ///< how much of the work was done, if not all
  std::string answer;
};

/// The most memory that this process had so far, in kilobytes, as the system counts it.
inline long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  return 0;
}

/// The main function of such a program: the last argument is the file for the answer.
inline int measureMain(int argc, char** argv, void (*run)(Measure&, const std::vector<std::string>&)) {
  try {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string file = arguments.empty() ? "" : arguments.back();
    if (!arguments.empty()) arguments.pop_back();
    Measure measure;
    run(measure, arguments);
    std::printf("%.9f %d %ld %s\n", measure.seconds, measure.runs, peakKilobytes(), measure.part.c_str());
    std::ofstream(file, std::ios::binary) << measure.answer;
    return 0;
  } catch (const std::exception& error) {
    std::cerr << argv[0] << ": " << error.what() << '\n';
    return 1;
  }
}

}  // namespace zelvion::bench
