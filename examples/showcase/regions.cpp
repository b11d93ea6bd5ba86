#include "regions.h"

#include <QStandardItemModel>
#include <QStringList>

namespace {

struct Country
{
    const char* continent;
    const char* name;
    const char* farms; // separated by commas
};

const Country countries[] = {
    {"Africa", "Ethiopia", "Yirga,Sidamo,Guji"},
    {"Africa", "Kenya", "Nyeri,Kiambu"},
    {"America", "Brazil", "Cerrado,Mogiana"},
    {"America", "Colombia", "Huila,Cauca,Tolima"},
    {"Asia", "Sumatra", "Gayo,Lintong"},
    {"Asia", "Vietnam", "Da Lat"},
};

} // namespace

void fillRegions(QStandardItemModel& model)
{
    QStandardItem* continent = nullptr;
    for (const Country& country : countries) {
        const QString continentName = QLatin1String(country.continent);
        if (!continent || continent->text() != continentName) {
            continent = new QStandardItem(continentName); // the model's
            model.appendRow(continent);
        }
        auto* item = new QStandardItem(QLatin1String(country.name)); // the continent's
        continent->appendRow(item);
        const QStringList farms = QString(QLatin1String(country.farms)).split(QLatin1Char(','));
        for (const QString& name : farms) {
            auto* farm = new QStandardItem(name); // the country's
            farm->setCheckable(true);
            item->appendRow(farm);
        }
    }
}
