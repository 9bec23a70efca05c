#include "PrivateBus.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/prctl.h>

namespace sonvara::test {
namespace {

// Wide limits: what is tested is how the adapter takes a flood, not how the daemon does.
const auto configuration = QStringLiteral(R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_names_per_connection">10000</limit>
  <limit name="max_match_rules_per_connection">100</limit>
  <limit name="max_pending_service_starts">1</limit>
  <limit name="max_message_size">33554432</limit>
  <limit name="max_outgoing_bytes">134217728</limit>
</busconfig>
)");

}  // namespace

void endWithThisProcess(QProcess& child)
{
    child.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

PrivateBus::PrivateBus()
{
    QFile file(folder_.filePath("bus.conf"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(configuration.arg(folder_.path()).toUtf8());
    file.close();
    endWithThisProcess(daemon_);
    daemon_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    daemon_.start("dbus-daemon",
                  {"--nofork", "--nopidfile", "--config-file=" + file.fileName(), "--print-address=1"});
    while (daemon_.state() != QProcess::NotRunning && !daemon_.canReadLine() &&
           daemon_.waitForReadyRead(10000)) {
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    EXPECT_FALSE(address_.isEmpty()) << "no bus: " << daemon_.errorString().toStdString();
}

PrivateBus::~PrivateBus()
{
    for (const auto& name : connections_) QDBusConnection::disconnectFromBus(name);
    kill();
}

QDBusConnection PrivateBus::connect()
{
    static int count = 0;
    connections_.append(QStringLiteral("test %1").arg(++count));
    auto connection = QDBusConnection::connectToBus(address_, connections_.last());
    EXPECT_TRUE(connection.isConnected());
    return connection;
}

void PrivateBus::kill()
{
    if (daemon_.state() == QProcess::NotRunning) return;
    daemon_.kill();
    EXPECT_TRUE(daemon_.waitForFinished(10000));
}

}  // namespace sonvara::test
