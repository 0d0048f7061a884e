// One panel for each user session: the second start asks the first to open its panel. Over a socket in the
// user's runtime folder that only the owner may use. Where there is no such folder, every start is the first.
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QString>
#include <functional>
#include <memory>

namespace tarnwick::panel {

class SingleInstance {
 public:
  // `folder`: $XDG_RUNTIME_DIR, or empty. Needs no QApplication.
  explicit SingleInstance(const QString& folder);

  bool isFirst() const { return lock_ == nullptr || lock_->isLocked(); }

  // Of a later start: true when the first one was told.
  bool askToOpen() const;

  // Of the first: calls `open` on the main loop whenever a later start asks. Needs the QApplication.
  void listen(std::function<void()> open);

 private:
  QString socket_;
  std::unique_ptr<QLockFile> lock_;  // null: no folder
  std::unique_ptr<QLocalServer> server_;
};

}  // namespace tarnwick::panel
