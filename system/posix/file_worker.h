// One worker process and the questions to it. It can be abandoned in the middle of one, even when nothing can
// end it. Used by one thread at a time.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "system/files.h"
#include "system/posix/descriptor.h"

namespace tarnwick {

class FileWorker {
 public:
  // `program` is started with the private word, see file_answers.h.
  explicit FileWorker(std::string program) : program_(std::move(program)) {}
  ~FileWorker() { dismiss(); }
  FileWorker(const FileWorker&) = delete;
  FileWorker& operator=(const FileWorker&) = delete;

  enum class Outcome {
    answered,
    late,   // the worker was abandoned
    broken  // it could not be started, or has ended
  };

  // Starts the process where none runs, asks and waits for at most so many seconds.
  Outcome ask(const FileQuestion& question, double seconds, FileAnswer& answer);

  // Ends the process that waits for the next question.
  void dismiss();

 private:
  bool start();
  void abandon();
  void layToRest();

  const std::string program_;
  Descriptor socket_;
  pid_t pid_ = 0;                 // 0: none runs
  std::vector<pid_t> abandoned_;  // killed, and perhaps never to end
};

}  // namespace tarnwick
