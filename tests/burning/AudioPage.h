// The audio page as a person uses it. Main thread.
#pragma once

#include "BurnAudioViewController.h"
#include "BurnPage.h"
#include "CDTextLanguageLists.h"
#include "CDTextPanel.h"
#include "WavTracks.h"

#include <QInputMethodEvent>
#include <QTableView>

class AudioPage : public BurnPage<BurnAudioViewController>
{
public:
    // With silent files of a second each, that have these names, as its tracks.
    explicit AudioPage(std::initializer_list<const char *> tracks = {})
    {
        QStringList paths;
        for (const char *name : tracks)
            paths.append(track(QString::fromLatin1(name)));
        if (!paths.isEmpty())
            add(paths);
    }

    // Chooses an item as a person does.
    void pick(const char *popUp, const QString &title) const
    {
        auto *box = control<QComboBox>(popUp);
        const int item = box->findText(title, Qt::MatchExactly);
        QVERIFY2(item >= 0, qPrintable(title));
        box->setCurrentIndex(item);
        Q_EMIT box->activated(item);
    }

    // Puts a text into a field in place of what it holds, as a keyboard does.
    void type(const char *field, const QString &text) const
    {
        auto *edit = control<QLineEdit>(field);
        QVERIFY(edit->isEnabled());
        edit->selectAll();
        if (text.isEmpty())
            QTest::keyClick(edit, Qt::Key_Delete);
        QInputMethodEvent keys;
        keys.setCommitString(text);
        QApplication::sendEvent(edit, &keys);
        QCOMPARE(edit->text(), text);
    }

    [[nodiscard]] QStringList items(const char *popUp) const
    {
        return CDTextLanguageLists::titles(control<QComboBox>(popUp));
    }

    // What is kept of the disc (0) or of a track (from 1).
    [[nodiscard]] QVariantMap texts(const QString &language, qsizetype index) const
    {
        return editor()->store().element(language, index);
    }

    // A silent file to add; the result is its path.
    [[nodiscard]] QString track(const QString &name, double seconds = 1) const
    {
        const auto frames = static_cast<qsizetype>(seconds * 44100);
        return drive.storeSource(name, WavTracks::wav(QByteArray(frames * 4, '\0')));
    }

    [[nodiscard]] QFileDialog *openChooser(const char *button) const
    {
        click(button);
        return page->findChild<QFileDialog *>();
    }

    // Adds files in the file chooser and waits until they are measured.
    void add(const QStringList &paths) const
    {
        QFileDialog *chooser = openChooser("addButton");
        QVERIFY(chooser);
        accept(chooser, u'"' + paths.join(QStringLiteral("\" \"")) + u'"');
        waitForEnd();
    }

    static void accept(QFileDialog *chooser, const QString &names)
    {
        chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(names);
        // "Open", or "Choose" where it is for folders.
        chooser->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
        QVERIFY(!chooser->isVisible());
    }

    // What the table shows in a column, a row each.
    [[nodiscard]] QStringList column(int column) const
    {
        const QAbstractItemModel *model = control<QTableView>("table")->model();
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->index(row, column).data().toString());
        return texts;
    }
    [[nodiscard]] QStringList names() const { return column(1); }

    [[nodiscard]] CDTextPanel *editor() const { return page->findChild<CDTextPanel *>(); }

    // Opens the editor by its button and switches CD-Text on.
    void openEditor() const
    {
        click("cdtextButton");
        QVERIFY(editor()->isVisible());
        check("cdtextEnabledCheckBox");
    }

    // Titles of the disc and of its tracks, in the language that is chosen.
    void writeTitles(const QString &disc, const QStringList &tracks) const
    {
        type("discTitleField", disc);
        for (int track = 0; track < tracks.size(); ++track) {
            auto *popUp = control<QComboBox>("tracksPopUp");
            popUp->setCurrentIndex(track);
            Q_EMIT popUp->activated(track);
            type("trackTitleField", tracks.at(track));
        }
    }

    void addLanguage(const QString &name) const
    {
        pick("availableLanguagePopUp", name);
        click("addLanguageButton");
    }
};
