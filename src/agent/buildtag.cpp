#include "agent/buildtag.h"

#include <QtCore/QMap>

namespace agent {

QString composeBuildTag()
{
    const int compilerVersion = 1900;
    QMap<int, QString> suffixes;
    suffixes[1600] = QLatin1String("_vs2010");
    suffixes[1700] = QLatin1String("_vs2012");
    suffixes[1800] = QLatin1String("_vs2013");
    suffixes[1900] = QLatin1String("_vs2015");
    return QLatin1String("qt") + QString::fromLatin1("4.8.6").remove(QLatin1Char('.')) + suffixes.value(compilerVersion)
        + QLatin1String("_x64");
}

} // namespace agent
