// A group of the text fields of the CD-Text editor: where each one's text is kept, and how it
// looks. Main thread.
#pragma once

#include "DRCDTextBlock.h"

#include <QString>
#include <QVariantMap>

#include <optional>
#include <vector>

class QLineEdit;

struct CDTextField
{
    QLineEdit *edit;
    QLatin1StringView key;
    bool isBytes = false; // kept as UTF-8, never burned
    bool isAscii = false; // on the disc, whatever the language's encoding
    QString toolTip = {}; // while nothing is wrong with the text
};

class CDTextFields
{
public:
    explicit CDTextFields(std::vector<CDTextField> fields);

    [[nodiscard]] const std::vector<CDTextField> &all() const { return m_fields; }

    void setEnabled(bool enabled) const;

    // Shows the texts that are kept, and empties the fields of those that are not.
    void load(const QVariantMap &texts) const;

    // What the fields hold. Empty texts are left out: what was kept before stays.
    [[nodiscard]] QVariantMap texts() const;

    // Marks the fields whose text the encoding cannot carry; null: none was chosen.
    void mark(std::optional<DRCDTextBlock::Encoding> encoding) const;

private:
    std::vector<CDTextField> m_fields;
};
