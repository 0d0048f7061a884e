#include "app/panel/qt/single_instance.h"

#include <unistd.h>

#include <QLocalSocket>
#include <utility>

namespace tarnwick::panel {
namespace {

constexpr const char* socketName = "tarnwick.socket";
constexpr int answerMilliseconds = 2000;  // the first one may be busy drawing

}  // namespace

SingleInstance::SingleInstance(const QString& folder)
    : named_(!folder.isEmpty()),
      socket_(folder + QLatin1Char('/') + QLatin1String(socketName)),
      folder_(PrivateFolder::open(folder.toStdString())) {
  if (folder_) lock_ = folder_->lock("tarnwick.lock");
}

bool SingleInstance::askToOpen() const {
  if (!folder_ || !folder_->hasSocket(socketName)) return false;
  QLocalSocket socket;
  socket.connectToServer(socket_, QIODevice::ReadWrite);
  if (!socket.waitForConnected(answerMilliseconds)) return false;
  // The first one hangs up when it has understood.
  return socket.waitForDisconnected(answerMilliseconds);
}

std::function<void()> SingleInstance::removal() const {
  if (lock_.state != PrivateFolder::Lock::State::held) return [] {};
  return [path = socket_.toStdString()] { ::unlink(path.c_str()); };
}

void SingleInstance::listen(std::function<void()> open) {
  if (lock_.state != PrivateFolder::Lock::State::held) return;
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
