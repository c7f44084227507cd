#include "ui/SingleInstance.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace isolith {

namespace {
// What a later start sends; anything else on the socket is ignored.
constexpr char kActivate[] = "ACTIVATE\n";
}  // namespace

QString SingleInstance::ServerName(const QString& executablePath) {
  // The path itself cannot be the name: a name with slashes is taken as a socket path, and
  // socket paths are short. A digest of the canonical path keeps one name per executable, and
  // the user id keeps users apart on a shared machine.
  QFileInfo info(executablePath);
  const QString canonical = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
  const QByteArray digest =
      QCryptographicHash::hash(canonical.toUtf8(), QCryptographicHash::Sha1).toHex().left(20);
  QString user;
#ifdef Q_OS_UNIX
  user = QString::number(::getuid());
#else
  user = qEnvironmentVariable("USERNAME");
#endif
  return QStringLiteral("isolith-%1-%2").arg(user, QString::fromLatin1(digest));
}

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent), name_(std::move(serverName)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::NotifyRunningInstance(int timeoutMilliseconds) {
  QLocalSocket socket;
  socket.connectToServer(name_);
  if (!socket.waitForConnected(timeoutMilliseconds)) return false;
  socket.write(kActivate);
  socket.flush();
  socket.waitForBytesWritten(timeoutMilliseconds);
  socket.disconnectFromServer();
  if (socket.state() != QLocalSocket::UnconnectedState)
    socket.waitForDisconnected(timeoutMilliseconds);
  return true;
}

bool SingleInstance::Listen() {
  if (server_) return server_->isListening();
  server_ = new QLocalServer(this);
  server_->setSocketOptions(QLocalServer::UserAccessOption);
  connect(server_, &QLocalServer::newConnection, this, &SingleInstance::OnConnection);
  if (server_->listen(name_)) return true;
  // No one answered on the name (checked before), so a socket file left by a program that
  // ended abnormally is in the way: remove it and try once more.
  QLocalServer::removeServer(name_);
  return server_->listen(name_);
}

void SingleInstance::OnConnection() {
  while (QLocalSocket* socket = server_->nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] { ReadRequest(socket); });
    // The line may have come before the connection above was made.
    ReadRequest(socket);
  }
}

void SingleInstance::ReadRequest(QLocalSocket* socket) {
  // The request is one short line; read it once it is whole.
  if (!socket->canReadLine()) return;
  const QByteArray line = socket->readLine(64);
  if (line == kActivate) emit activationRequested();
}

}  // namespace isolith
