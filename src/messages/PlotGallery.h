// The kinds of charts that there are, each registered by itself when the program starts. Main
// thread.
#pragma once

#include "PlotItem.h"

#include <QMap>
#include <QStringList>

#include <memory>

class PlotGallery
{
public:
    using Maker = std::unique_ptr<PlotItem> (*)();

    [[nodiscard]] static PlotGallery &instance();

    // Takes the item's title and section from one that it makes. False where the title is taken.
    bool registerPlotItem(Maker maker);

    [[nodiscard]] QStringList sections() const;
    [[nodiscard]] QStringList titles(const QString &section) const;
    // A new item; null for an unknown title.
    [[nodiscard]] std::unique_ptr<PlotItem> plotItem(const QString &title) const;

private:
    struct Entry
    {
        QString section;
        Maker make;
    };

    QMap<QString, Entry> m_entries; // by title
};
