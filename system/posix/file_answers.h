// The process that asks the system about files on behalf of another one, which can then do without it: the
// program itself, started anew with a private word and a socket as standard input. A question is a head, a
// path and what shall be written, its answer a head and bytes, all in the machine's own order; it ends when
// the other end hangs up.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tarnwick {

inline constexpr const char* fileWorkerWord = "--file-questions";

// Longer ones are absent.
inline constexpr std::size_t longestFilePath = 8'192;
inline constexpr std::size_t longestFileAnswer = std::size_t{16} << 20U;

struct FileQuestionHead {
  std::uint32_t kind = 0;
  std::uint32_t pathBytes = 0;
  std::uint64_t bytes = 0;
};

struct FileAnswerHead {
  std::uint32_t found = 0;  // 0 or 1
  std::uint32_t bytes = 0;
};

// Was the program started for this? Nobody who types the word has a socket there.
bool isFileWorker(int argc, char** argv);

// Answers until the other end hangs up; the exit status.
int serveFileQuestions();

}  // namespace tarnwick
