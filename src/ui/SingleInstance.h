// One running program per user and executable: the first start listens on a local socket named
// after the executable's path; a later start finds it, asks it to come to the front and ends.
#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace isolith {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // The socket name for an executable path: the same path gives the same name, for this user.
  static QString ServerName(const QString& executablePath);

  explicit SingleInstance(QString serverName, QObject* parent = nullptr);
  ~SingleInstance() override;

  // True when a running instance answered; it has then been asked to come to the front.
  bool NotifyRunningInstance(int timeoutMilliseconds = 1000);
  // Starts listening for later starts. False when the socket could not be made: the program
  // then runs on without the guard.
  bool Listen();

 signals:
  // A later start asked this instance to come to the front.
  void activationRequested();

 private:
  void OnConnection();
  void ReadRequest(QLocalSocket* socket);

  QString name_;
  QLocalServer* server_ = nullptr;
};

}  // namespace isolith
