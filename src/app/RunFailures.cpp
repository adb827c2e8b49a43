#include "app/RunFailures.h"

#include "content/CopyResult.h"
#include "content/DeleteResult.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

namespace nivor {
namespace {

template <typename Files> QStringList linesOf(const Files& files)
{
    QStringList lines;
    for (const auto& file : files) {
        if (file.failure.empty())
            continue;
        const QString name = NVX_stringByTrimmingNullCharacters(file.object->fileName());
        lines.push_back(
            visibleName(name + QStringLiteral(": ") + QString::fromStdString(file.failure)));
    }
    return lines;
}

}  // namespace

QStringList failureLines(const CopyResult& result)
{
    return linesOf(result.files);
}

QStringList failureLines(const DeleteResult& result)
{
    return linesOf(result.files);
}

}  // namespace nivor
