// One panel for each user session: the second start asks the first to open its panel. Over a lock and a
// socket in the user's runtime folder. Both and the folder must be the user's alone; where they are not, or
// there is no such folder, every start is the first, and nobody else speaks for it.
#pragma once

#include <QLocalServer>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "system/posix/private_folder.h"

namespace tarnwick::panel {

class SingleInstance {
 public:
  // `folder`: $XDG_RUNTIME_DIR, or empty. Needs no QApplication.
  explicit SingleInstance(const QString& folder);

  bool isFirst() const { return lock_.state != PrivateFolder::Lock::State::elsewhere; }

  // A folder was named, but it or the lock in it is not the user's alone: later starts cannot find this one.
  bool isRefused() const { return named_ && lock_.state == PrivateFolder::Lock::State::refused; }

  // Of a later start: true when the first one was told.
  bool askToOpen() const;

  // Of the first: takes its socket away, also after this object has gone. Any thread.
  std::function<void()> removal() const;

  // Of the first: calls `open` on the main loop whenever a later start asks. Needs the QApplication.
  void listen(std::function<void()> open);

 private:
  const bool named_;
  const QString socket_;
  const std::optional<PrivateFolder> folder_;  // absent: none that is the user's alone
  PrivateFolder::Lock lock_;
  std::unique_ptr<QLocalServer> server_;
};

}  // namespace tarnwick::panel
