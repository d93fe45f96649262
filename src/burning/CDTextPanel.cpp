#include "CDTextPanel.h"

#include "Alerts.h"
#include "CDTextLanguageLists.h"
#include "CDTextPacks.h"
#include "DRCDTextKeys.h"
#include "Form.h"
#include "Localized.h"
#include "ui_CDText.h"

#include <algorithm>

namespace {

using CDTextLanguageLists::defaultLanguage;

void alert(const char *message, const char *informativeText)
{
    MiscTool::showAlert(localized("CDText", message), localized("CDText", informativeText));
}

}

CDTextPanel::CDTextPanel(QWidget *parent)
    : QDialog(parent)
    , m_ui(madeForm<Ui::CDText>(this))
    , m_store(defaultLanguage())
    , m_discFields({
          {m_ui->discTitleField, DRCDTextTitleKey},
          {m_ui->discIdentityField, DRCDTextDiscIdentKey, false, true},
          {m_ui->mcnISRCField, DRCDTextMCNISRCKey, false, true},
          {m_ui->specialMessageField, DRCDTextSpecialMessageKey},
          {m_ui->discPerformerField, DRCDTextPerformerKey},
          {m_ui->discSongwriterField, DRCDTextSongwriterKey},
          {m_ui->discComposerField, DRCDTextComposerKey},
          {m_ui->discArrangerField, DRCDTextArrangerKey},
          {m_ui->closedField, DRCDTextClosedKey},
          {m_ui->sizeField, DRCDTextSizeKey, true},
          {m_ui->tocField, DRCDTextTOCKey, true},
          {m_ui->toc2Field, DRCDTextTOC2Key, true},
      })
    , m_trackFields({
          {m_ui->trackTitleField, DRCDTextTitleKey},
          {m_ui->trackPerformerField, DRCDTextPerformerKey},
          {m_ui->trackSongwriterField, DRCDTextSongwriterKey},
          {m_ui->trackComposerField, DRCDTextComposerKey},
          {m_ui->trackArrangerField, DRCDTextArrangerKey},
      })
{
    setWindowModality(Qt::WindowModal);
    CDTextChoices::initEncodings(m_ui->encodingPopUp);
    CDTextChoices::initGenres(m_ui->genrePopUp);
    CDTextLanguageLists::rebuild(m_ui->selectedLanguagePopUp, {}, defaultTag());
    connectControls();
    cdtextEnableAction();
}

CDTextPanel::~CDTextPanel() = default;

void CDTextPanel::connectControls()
{
    using Self = CDTextPanel;
    connect(m_ui->cdtextEnabledCheckBox, &QAbstractButton::toggled, this,
            &Self::cdtextEnableAction);
    connect(m_ui->addLanguageButton, &QAbstractButton::clicked, this, &Self::addLanguageAction);
    connect(m_ui->removeLanguageButton, &QAbstractButton::clicked, this,
            &Self::removeLanguageAction);
    connect(m_ui->convertButton, &QAbstractButton::clicked, this, &Self::fillTrackTitleAction);
    connect(m_ui->saveButton, &QAbstractButton::clicked, this, &Self::saveAction);
    connect(m_ui->encodingPopUp, &QComboBox::activated, this, &Self::encodingAction);
    connect(m_ui->selectedLanguagePopUp, &QComboBox::activated, this,
            &Self::selectedLanguageChangeAction);
    connect(m_ui->tracksPopUp, &QComboBox::activated, this, &Self::tracksAction);
    connect(m_ui->genrePopUp, &QComboBox::activated, this, &Self::saveDiscCDText);
    for (QCheckBox *box : {m_ui->titlesCopyrightCheckBox, m_ui->specialMessageCheckBox,
                           m_ui->performerSongwriterComposerArrangerCheckBox})
        connect(box, &QAbstractButton::clicked, this, &Self::saveDiscCDText);
    for (const CDTextField &field : m_discFields.all())
        connect(field.edit, &QLineEdit::textEdited, this, &Self::saveDiscCDText);
    for (const CDTextField &field : m_trackFields.all())
        connect(field.edit, &QLineEdit::textEdited, this, &Self::saveTrackCDText);
}

// The track's fields are loaded before the track is chosen, and keep showing that one until
// another is chosen by hand.
void CDTextPanel::edit(const QStringList &tracks, Tab tab, int track)
{
    m_ui->tracksPopUp->clear();
    m_ui->tracksPopUp->addItems(tracks);
    tracksAction();
    m_ui->tabView->setCurrentWidget(tab == Tab::Disc ? m_ui->discTabViewItem
                                                     : m_ui->trackTabViewItem);
    m_ui->tracksPopUp->setCurrentIndex(track);
    showState();
    open();
}

bool CDTextPanel::isTextEnabled() const
{
    return m_ui->cdtextEnabledCheckBox->isChecked();
}

void CDTextPanel::setTextEnabled(bool enabled)
{
    m_ui->cdtextEnabledCheckBox->setChecked(enabled);
    cdtextEnableAction();
}

void CDTextPanel::cdtextEnableAction()
{
    const bool enabled = isTextEnabled();
    Q_EMIT textEnabledChanged(enabled);
    m_ui->languageBox->setEnabled(enabled);
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->titlesCopyrightCheckBox, m_ui->specialMessageCheckBox,
             m_ui->performerSongwriterComposerArrangerCheckBox, m_ui->genrePopUp, m_ui->tracksPopUp,
             m_ui->convertButton})
        control->setEnabled(enabled);
    m_discFields.setEnabled(enabled);
    m_trackFields.setEnabled(enabled);
    showState();
}

void CDTextPanel::initAvailableLanguages()
{
    m_ui->availableLanguagePopUp->clear();
    m_ui->availableLanguagePopUp->addItems(m_languageTable.allKeys());
}

void CDTextPanel::addLanguageAction()
{
    if (m_ui->selectedLanguagePopUp->count() >= CDTextPacks::maxBlocks) {
        alert(QT_TRANSLATE_NOOP("CDText", "Can not add language any more"),
              QT_TRANSLATE_NOOP("CDText", "CDText only supports 8 languages"));
        return;
    }
    QStringList titles = CDTextLanguageLists::titles(m_ui->selectedLanguagePopUp);
    const QString name = m_ui->availableLanguagePopUp->currentText();
    if (titles.contains(name)) {
        alert(QT_TRANSLATE_NOOP("CDText", "The language has been added"),
              QT_TRANSLATE_NOOP("CDText", "You cannot add the same language"));
        return;
    }
    if (name.isEmpty())
        return;
    m_ui->availableLanguagePopUp->removeItem(m_ui->availableLanguagePopUp->currentIndex());
    CDTextLanguageLists::rebuild(m_ui->selectedLanguagePopUp, titles << name, defaultTag());
    const int item = m_ui->selectedLanguagePopUp->findText(name, Qt::MatchExactly);
    m_ui->selectedLanguagePopUp->setCurrentIndex(item);
    m_ui->selectedLanguagePopUp->setItemData(item, m_ui->encodingPopUp->currentData().toInt());
    m_store.addLanguage(name, m_ui->tracksPopUp->count());
    selectedLanguageChangeAction();
}

void CDTextPanel::removeLanguageAction()
{
    const QString name = language();
    if (name == defaultLanguage()) {
        alert(QT_TRANSLATE_NOOP("CDText", "The default language cannot be removed"),
              QT_TRANSLATE_NOOP("CDText", "The default language must be retained"));
        return;
    }
    m_ui->selectedLanguagePopUp->removeItem(m_ui->selectedLanguagePopUp->currentIndex());
    m_store.removeLanguage(name);
    CDTextLanguageLists::putBack(m_ui->availableLanguagePopUp, name);
    selectedLanguageChangeAction(); // the fields are those of the language that is chosen now
}

void CDTextPanel::encodingAction()
{
    m_ui->selectedLanguagePopUp->setItemData(m_ui->selectedLanguagePopUp->currentIndex(),
                                             m_ui->encodingPopUp->currentData());
    showState();
}

void CDTextPanel::selectedLanguageChangeAction()
{
    m_ui->encodingPopUp->setCurrentIndex(
        m_ui->encodingPopUp->findData(m_ui->selectedLanguagePopUp->currentData()));
    showDisc(m_store.element(language(), 0));
    tracksAction();
}

// The genre is looked for under the key of a disc that was read, not under the one it is saved by.
void CDTextPanel::showDisc(const QVariantMap &texts) const
{
    m_discFields.load(texts);
    const auto flag = [&](QCheckBox *box, QLatin1StringView key) {
        box->setChecked(texts.value(key).toInt() != 0);
    };
    flag(m_ui->titlesCopyrightCheckBox, DRCDTextCopyrightAssertedForTitlesKey);
    flag(m_ui->specialMessageCheckBox, DRCDTextCopyrightAssertedForSpecialMessagesKey);
    flag(m_ui->performerSongwriterComposerArrangerCheckBox, DRCDTextCopyrightAssertedForNamesKey);
    const int genre = m_ui->genrePopUp->findData(texts.value(DRCDTextGenreKey).toInt());
    m_ui->genrePopUp->setCurrentIndex(std::max(0, genre));
}

void CDTextPanel::tracksAction()
{
    m_trackFields.load(m_store.element(language(), m_ui->tracksPopUp->currentIndex() + 1));
    showState();
}

void CDTextPanel::saveDiscCDText()
{
    QVariantMap disc = m_discFields.texts();
    disc.insert(DRCDTextCopyrightAssertedForTitlesKey, m_ui->titlesCopyrightCheckBox->isChecked());
    disc.insert(DRCDTextCopyrightAssertedForSpecialMessagesKey,
                m_ui->specialMessageCheckBox->isChecked());
    disc.insert(DRCDTextCopyrightAssertedForNamesKey,
                m_ui->performerSongwriterComposerArrangerCheckBox->isChecked());
    disc.insert(DRCDTextGenreCodeKey, m_ui->genrePopUp->currentData().toInt());
    m_store.store(language(), 0, disc, m_ui->tracksPopUp->count());
    showState();
}

void CDTextPanel::saveTrackCDText()
{
    const int track = m_ui->tracksPopUp->currentIndex();
    if (track < 0)
        return;
    m_store.store(language(), track + 1, m_trackFields.texts(), m_ui->tracksPopUp->count());
    showState();
}

// The name up to its first dot; all of a name without one.
void CDTextPanel::fillTrackTitleAction()
{
    m_ui->trackTitleField->setText(m_ui->tracksPopUp->currentText().section(u'.', 0, 0));
    saveTrackCDText();
}

void CDTextPanel::saveAction()
{
    if (cdtextVerify())
        accept();
}

bool CDTextPanel::cdtextVerify()
{
    if (!isTextEnabled())
        return true;
    if (m_ui->discTitleField->text().isEmpty()) {
        alert(QT_TRANSLATE_NOOP("CDText", "Disc title cannot be null"),
              QT_TRANSLATE_NOOP("CDText", "Please fill in the disc title"));
        showTab(Tab::Disc, m_ui->discTitleField);
        return false;
    }
    if (m_ui->trackTitleField->text().isEmpty()) {
        alert(QT_TRANSLATE_NOOP("CDText", "Track title cannot be null"),
              QT_TRANSLATE_NOOP("CDText", "Please fill in the track title"));
        showTab(Tab::Track, m_ui->trackTitleField);
        return false;
    }
    return verifyTitles();
}

// The language is chosen without loading its fields; those shown are emptied where it matters.
bool CDTextPanel::verifyTitles()
{
    const QStringList titles = CDTextLanguageLists::titles(m_ui->selectedLanguagePopUp);
    for (int item = 0; item < titles.size(); ++item) {
        const QList<QVariantMap> list = m_store.list(titles.at(item));
        const auto count = std::min<qsizetype>(list.size(), m_ui->tracksPopUp->count() + 1);
        for (qsizetype index = 1; index < count; ++index) {
            if (list.at(index).contains(DRCDTextTitleKey))
                continue;
            m_ui->tracksPopUp->setCurrentIndex(static_cast<int>(index) - 1);
            m_ui->trackTitleField->clear();
            MiscTool::showAlert(m_ui->tracksPopUp->currentText() + u' '
                                    + localized("CDText", "is not set track title"),
                                localized("CDText", "Please fill in the track title"));
            showTab(Tab::Track, m_ui->trackTitleField);
            m_ui->selectedLanguagePopUp->setCurrentIndex(item);
            showState();
            return false;
        }
    }
    return true;
}

void CDTextPanel::showTab(Tab tab, QLineEdit *field) const
{
    m_ui->tabView->setCurrentWidget(tab == Tab::Disc ? m_ui->discTabViewItem
                                                     : m_ui->trackTabViewItem);
    field->setFocus();
}

void CDTextPanel::appendTrack()
{
    m_store.appendTrack(language());
}

void CDTextPanel::removeTrack(qsizetype track)
{
    m_store.removeTrack(language(), track);
}

void CDTextPanel::clear()
{
    m_store.clear();
    setTextEnabled(false);
    while (m_ui->selectedLanguagePopUp->count() > 1)
        m_ui->selectedLanguagePopUp->removeItem(m_ui->selectedLanguagePopUp->count() - 1);
    m_ui->encodingPopUp->setCurrentIndex(
        m_ui->encodingPopUp->findData(m_ui->selectedLanguagePopUp->currentData()));
    showDisc({});
    m_trackFields.load({});
    m_ui->tracksPopUp->clear();
    showState();
}

// What is wrong with the texts, if anything, and how much room they take.
void CDTextPanel::showState() const
{
    const auto encoding =
        CDTextChoices::encodingOf(m_ui->selectedLanguagePopUp->currentData().toInt());
    m_discFields.mark(encoding);
    m_trackFields.mark(encoding);
    m_ui->spaceLabel->setText(spaceText());
}

QString CDTextPanel::spaceText() const
{
    QStringList full;
    int shown = 0;
    for (int item = 0; item < m_ui->selectedLanguagePopUp->count(); ++item) {
        const std::optional<DRCDTextBlock> block = getCDTextBlock(item);
        const int packs = block ? CDTextPacks::packCount(*block, m_ui->tracksPopUp->count()) : 0;
        if (packs > CDTextPacks::maxPayloadPacks)
            full.append(m_ui->selectedLanguagePopUp->itemText(item));
        if (item == m_ui->selectedLanguagePopUp->currentIndex())
            shown = packs;
    }
    if (!CDTextChoices::encodingOf(m_ui->selectedLanguagePopUp->currentData().toInt()))
        return localized("CDText", "Choose an encoding, or this language is left out.");
    if (!full.isEmpty())
        return QStringLiteral("<b style='color:#c01c28'>")
               + localized("CDText", "Too much text: %1")
                     .arg(full.join(QStringLiteral(", ")).toHtmlEscaped())
               + QStringLiteral("</b>");
    return localized("CDText", "%1 of %2 packs used").arg(shown).arg(CDTextPacks::maxPayloadPacks);
}

int CDTextPanel::defaultTag() const
{
    return m_ui->encodingPopUp->itemData(0).toInt();
}

QString CDTextPanel::language() const
{
    return m_ui->selectedLanguagePopUp->currentText();
}

std::optional<DRCDTextBlock> CDTextPanel::getCDTextBlock(int item) const
{
    const QString title = m_ui->selectedLanguagePopUp->itemText(item);
    const auto encoding =
        CDTextChoices::encodingOf(m_ui->selectedLanguagePopUp->itemData(item).toInt());
    if (!encoding)
        return std::nullopt;
    DRCDTextBlock block =
        DRCDTextBlock::cdTextBlockWithLanguage(m_languageTable.valueForKey(title), *encoding);
    block.setTrackDictionaries(m_store.list(title));
    return block;
}

QVariant CDTextPanel::getCDText() const
{
    const int count = m_ui->selectedLanguagePopUp->count();
    if (count == 1) {
        const std::optional<DRCDTextBlock> block =
            getCDTextBlock(m_ui->selectedLanguagePopUp->currentIndex());
        return block ? QVariant::fromValue(*block) : QVariant();
    }
    QVariantList blocks;
    for (int item = 0; item < count; ++item)
        if (const std::optional<DRCDTextBlock> block = getCDTextBlock(item))
            blocks.append(QVariant::fromValue(*block));
    return blocks;
}

bool CDTextPanel::isValidISRC(const QString &text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const auto isLetter = [](QChar c) { return c >= u'A' && c <= u'Z'; };
    const auto isEither = [&](QChar c) { return isDigit(c) || isLetter(c); };
    return text.size() == 12 && std::ranges::all_of(text.first(2), isLetter)
           && std::ranges::all_of(text.sliced(2, 3), isEither)
           && std::ranges::all_of(text.sliced(5), isDigit);
}
