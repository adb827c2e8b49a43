#include "app/DirectSaveFolder.h"

#include <QFileInfo>

#include <algorithm>

namespace nivor {
namespace {

bool isThisComputer(const QByteArray& host, const QString& hostName)
{
    return host.isEmpty() || host.compare("localhost", Qt::CaseInsensitive) == 0
        || host.compare(hostName.toUtf8(), Qt::CaseInsensitive) == 0;
}

/// URIs have no raw control characters, and none of their paths ends before a '?' or '#': file
/// managers escape those, and who doesn't may have left a '%' as it was as well.
bool isForbiddenInUri(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || c == '?' || c == '#';
}

/// The absolute path of a file: URI, still escaped; empty when it isn't one for this computer.
QByteArray escapedPath(const QByteArray& uri, const QString& hostName)
{
    constexpr QByteArrayView scheme = "file:";
    if (uri.left(scheme.size()).compare(scheme, Qt::CaseInsensitive) != 0)
        return {};
    QByteArray path = uri.mid(scheme.size());
    if (path.startsWith("//")) {
        const qsizetype hostEnd = path.indexOf('/', 2);
        if (hostEnd < 0 || !isThisComputer(path.mid(2, hostEnd - 2), hostName))
            return {};
        path.remove(0, hostEnd);
    }
    return path.startsWith('/') ? path : QByteArray();
}

int hexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

/// Nothing when an escape is malformed, or stands for a byte that no file name has.
std::optional<QByteArray> unescaped(const QByteArray& text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != '%') {
            bytes += text.at(i);
            continue;
        }
        const int high = i + 1 < text.size() ? hexValue(text.at(i + 1)) : -1;
        const int low = i + 2 < text.size() ? hexValue(text.at(i + 2)) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        const char byte = static_cast<char>(high * 16 + low);
        if (byte == '\0' || byte == '/')
            return std::nullopt;
        bytes += byte;
        i += 2;
    }
    return bytes;
}

}  // namespace

std::optional<QUrl> directSaveFolder(const QByteArray& answer, const QString& hostName)
{
    if (answer.size() > longestDirectSaveAnswer)
        return std::nullopt;
    QByteArray uri = answer;
    if (uri.endsWith('\0'))
        uri.chop(1);
    if (std::any_of(uri.cbegin(), uri.cend(), &isForbiddenInUri))
        return std::nullopt;

    const std::optional<QByteArray> path = unescaped(escapedPath(uri, hostName));
    // Without a name behind the folder it could be the folder itself that is meant; that is not
    // for us to guess. A path that is no text can't be told to the rest of the program.
    if (!path || !path->startsWith('/') || path->endsWith('/') || !path->isValidUtf8())
        return std::nullopt;

    const QString folder =
        QString::fromUtf8(path->left(std::max<qsizetype>(path->lastIndexOf('/'), 1)));
    if (!QFileInfo(folder).isDir())
        return std::nullopt;
    return QUrl::fromLocalFile(folder);
}

}  // namespace nivor
