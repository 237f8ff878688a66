#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QVariantList>
#include <memory>

#include "harness/wait.h"

namespace tarnwick::test {

// Sends values from one end of a private bus connection to the other: what comes out is as a
// program gets it from another one.
class Wire : public QDBusVirtualObject {
 public:
  Wire() {
    QObject::connect(&server_, &QDBusServer::newConnection, this, [this](QDBusConnection peer) {
      peer_ = std::make_unique<QDBusConnection>(peer);
      peer_->registerVirtualObject("/", this);
    });
    sender_ = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToPeer(server_.address(), "wire"));
  }
  ~Wire() override { QDBusConnection::disconnectFromPeer("wire"); }

  // As arguments of a message; empty when nothing came.
  QVariantList pass(const QVariantList& values) {
    received_.clear();
    if (!waitFor([&] { return peer_ != nullptr; })) return {};
    QDBusMessage message = QDBusMessage::createMethodCall({}, "/", "a.b", "Pass");
    message.setArguments(values);
    sender_->send(message);
    if (!waitFor([&] { return !received_.isEmpty(); })) return {};
    return received_;
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
    received_ = message.arguments();
    return true;
  }
  QString introspect(const QString&) const override { return {}; }

 private:
  QDBusServer server_;
  std::unique_ptr<QDBusConnection> peer_;
  std::unique_ptr<QDBusConnection> sender_;
  QVariantList received_;
};

}  // namespace tarnwick::test
