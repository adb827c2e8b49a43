#include "usb/SystemCameraAgent.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

namespace nivor {

namespace {

struct Outcome {
    std::string output;
    std::string error;
};

/// Runs a tool to its end and collects what it writes; kills it when it takes too long.
Outcome run(const QString& program, const QStringList& arguments, std::chrono::milliseconds limit)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(static_cast<int>(limit.count()))
        && process.state() != QProcess::NotRunning) {
        process.kill();
        // Nothing outlives that signal, unless the kernel itself is stuck.
        process.waitForFinished(1000);
    }
    return {.output = process.readAllStandardOutput().toStdString(),
            .error = process.readAllStandardError().toStdString()};
}

}  // namespace

SystemCameraAgent::SystemCameraAgent(std::chrono::milliseconds limit)
    : limit_(limit)
{
}

std::string SystemCameraAgent::release()
{
#ifdef __APPLE__
    return run(QStringLiteral("/usr/bin/pkill"),
               {QStringLiteral("-f"), QStringLiteral("PTPCamera")}, limit_)
        .error;
#else
    const QString gio = QStandardPaths::findExecutable(QStringLiteral("gio"));
    if (gio.isEmpty())
        return {};
    const Outcome mounts = run(gio, {QStringLiteral("mount"), QStringLiteral("-l")}, limit_);
    if (mounts.output.find("-> gphoto2://") == std::string::npos)
        return mounts.error;
    const Outcome unmounted = run(
        gio, {QStringLiteral("mount"), QStringLiteral("-s"), QStringLiteral("gphoto2")}, limit_);
    return mounts.error + unmounted.error;
#endif
}

}  // namespace nivor
