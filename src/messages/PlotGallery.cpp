#include "PlotGallery.h"

PlotGallery &PlotGallery::instance()
{
    static PlotGallery gallery;
    return gallery;
}

bool PlotGallery::registerPlotItem(Maker maker)
{
    const std::unique_ptr<PlotItem> item = maker();
    if (m_entries.contains(item->title()))
        return false;
    m_entries.insert(item->title(), {item->section(), maker});
    return true;
}

QStringList PlotGallery::sections() const
{
    QStringList sections;
    for (const Entry &entry : m_entries)
        sections.append(entry.section);
    sections.removeDuplicates();
    sections.sort();
    return sections;
}

QStringList PlotGallery::titles(const QString &section) const
{
    QStringList titles;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        if (entry->section == section)
            titles.append(entry.key());
    return titles;
}

std::unique_ptr<PlotItem> PlotGallery::plotItem(const QString &title) const
{
    const auto entry = m_entries.constFind(title);
    return entry == m_entries.cend() ? nullptr : entry->make();
}
