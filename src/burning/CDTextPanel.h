// The editor of an audio disc's CD-Text: a sheet with the languages, the disc's texts and those of
// each track. What is typed is in the store at once. Main thread.
#pragma once

#include "CDTextChoices.h"
#include "CDTextFields.h"
#include "CDTextStore.h"
#include "ISO639_1.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CDText;
}

class QLineEdit;

class CDTextPanel : public QDialog
{
    Q_OBJECT

public:
    explicit CDTextPanel(QWidget *parent);
    ~CDTextPanel() override;

    enum class Tab { Disc, Track };

    // Opens the sheet for tracks of these names; track is the one that is then chosen, while the
    // track's fields are still those of the track chosen before.
    void edit(const QStringList &tracks, Tab tab, int track);

    [[nodiscard]] bool isTextEnabled() const;
    void setTextEnabled(bool enabled);

    // Fills the list of languages that can be added.
    void initAvailableLanguages();

    // A track came, or went, in the language that is chosen.
    void appendTrack();
    void removeTrack(qsizetype track);

    // Forgets all texts and all languages but the first, and switches CD-Text off.
    void clear();

    [[nodiscard]] const CDTextStore &store() const { return m_store; }

    // The text for a burn: a block where there is one language, else a list of blocks. A language
    // whose encoding was not chosen has none.
    [[nodiscard]] QVariant getCDText() const;

    // Whether the text is an International Standard Recording Code (ISO 3901), without hyphens.
    [[nodiscard]] static bool isValidISRC(const QString &text);

    // Closes the sheet, if what is in it is complete.
    void reject() override { saveAction(); }

Q_SIGNALS:
    void textEnabledChanged(bool enabled);

private:
    void connectControls();

    void cdtextEnableAction();
    void addLanguageAction();
    void removeLanguageAction();
    void encodingAction();
    void selectedLanguageChangeAction();
    void tracksAction();
    void fillTrackTitleAction();
    void saveAction();

    void saveDiscCDText();
    void saveTrackCDText();
    void showDisc(const QVariantMap &texts) const;

    [[nodiscard]] bool cdtextVerify();
    [[nodiscard]] bool verifyTitles();
    void showTab(Tab tab, QLineEdit *field) const;

    void showState() const;
    [[nodiscard]] QString spaceText() const;

    [[nodiscard]] QString language() const;
    [[nodiscard]] int defaultTag() const; // of the first encoding
    [[nodiscard]] std::optional<DRCDTextBlock> getCDTextBlock(int item) const;

    std::unique_ptr<Ui::CDText> m_ui;
    mutable ISO639_1 m_languageTable; // loaded at first use
    CDTextStore m_store;
    CDTextFields m_discFields;
    CDTextFields m_trackFields;
};
