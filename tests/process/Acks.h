#ifndef TESTS_PROCESS_ACKS_H_
#define TESTS_PROCESS_ACKS_H_

// What a writer of the log has done, in a file that it maps, so that it outlives the writer.
struct Acks {
  static constexpr int kMost = 100000;
  int begun;  // records; a further process goes on behind them
  bool written[kMost + 1];
};

#endif  // TESTS_PROCESS_ACKS_H_
