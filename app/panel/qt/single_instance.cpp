#include "app/panel/qt/single_instance.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <utility>

namespace tarnwick::panel {
namespace {

constexpr int answerMilliseconds = 2000;  // the first one may be busy drawing

}  // namespace

SingleInstance::SingleInstance(const QString& folder) : socket_(folder + QStringLiteral("/tarnwick.socket")) {
  const QFileInfo place(folder);
  if (!place.isAbsolute() || !place.isDir() || !place.isWritable()) return;
  lock_ = std::make_unique<QLockFile>(folder + QStringLiteral("/tarnwick.lock"));
  lock_->setStaleLockTime(0);  // held as long as the process lives, however long that is
  if (!lock_->tryLock(0) && lock_->error() != QLockFile::LockFailedError) lock_.reset();
}

bool SingleInstance::askToOpen() const {
  QLocalSocket socket;
  socket.connectToServer(socket_, QIODevice::ReadWrite);
  if (!socket.waitForConnected(answerMilliseconds)) return false;
  // The first one hangs up when it has understood.
  return socket.waitForDisconnected(answerMilliseconds);
}

void SingleInstance::listen(std::function<void()> open) {
  if (lock_ == nullptr) return;
  QLocalServer::removeServer(socket_);  // left by a run that was killed; the lock says that it is gone
  server_ = std::make_unique<QLocalServer>();
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(server_.get(), &QLocalServer::newConnection, server_.get(),
                   [this, open = std::move(open)] {
                     while (QLocalSocket* asking = server_->nextPendingConnection()) {
                       QObject::connect(asking, &QLocalSocket::disconnected, asking, &QObject::deleteLater);
                       asking->disconnectFromServer();
                       open();
                     }
                   });
  server_->listen(socket_);
}

}  // namespace tarnwick::panel
