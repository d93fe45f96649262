// What every part of the unattended tour does as a person would: finds controls, clicks, answers
// questions, waits, and takes screenshots. What goes wrong ends the tour by an exception. Main
// thread.
#pragma once

#include "ViewController.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>

class QFileDialog;

inline constexpr int soon = 10 * 1000; // ms that the window may take for what is done at once
inline constexpr int measured = 10 * 60 * 1000; // ms that measuring sources may take
inline constexpr int burned = 24 * 60 * 60 * 1000;

void say(const QString &line);

// Ends the tour: what a person would report.
[[noreturn]] void fail(const QString &reason);
void require(bool condition, const QString &otherwise);

// The alert that stands in the way; null without one. Closes it, and notes its message.
[[nodiscard]] QMessageBox *alert();
void closeAlert();
// Done once, while the next alert is open: the tour itself waits until an alert has gone.
void atNextAlert(const std::function<void()> &action);
[[nodiscard]] const QStringList &alertsSoFar();

class TourSteps
{
public:
    TourSteps(ViewController &window, const QString &shots);

protected:
    // A session of the program with a window of its own, from the sheet to sign in on.
    template <typename Tour, typename Steps>
    static void runSession(const QString &shots, const Steps &steps)
    {
        ViewController window;
        window.show();
        require(QTest::qWaitForWindowExposed(&window), QStringLiteral("no window"));
        Tour tour(window, shots);
        tour.closeNotice();
        steps(tour);
    }

    template <typename Control>
    Control *find(const char *name) const
    {
        const QList<Control *> found = m_window.findChildren<Control *>(QLatin1StringView(name));
        for (Control *control : found)
            if (control->isVisible())
                return control;
        fail(QStringLiteral("no %1 to be seen").arg(QLatin1StringView(name)));
    }

    [[nodiscard]] bool isShown(const char *name) const;
    static void click(QWidget *control) { QTest::mouseClick(control, Qt::LeftButton); }
    static void waitFor(const std::function<bool()> &condition, const QString &otherwise,
                        int time = soon);
    void shoot(const QString &name) const;
    // With the window as small as it goes.
    void shootNarrow(const QString &name) const;
    // The window with the sheet; then the sheet as small as it goes.
    void shootSheet(const QString &name) const;

    // The notice, and then the sheet to sign in; once pressed, the sheet is left to itself.
    void closeNotice() const;
    void pressSignIn(const QString &user, const QString &password) const;
    void signOut() const;

    // Chooses the item of a pop-up as a person would.
    void pick(const char *popUp, const QString &title) const;

    // Waits until one more alert than before the action has come and gone, and requires it to say
    // this.
    static void waitForAlert(const QString &message, const std::function<void()> &action);
    void clickForAlert(const char *button, const QString &message) const;

    void openModule(const QString &name) const;
    [[nodiscard]] QMessageBox *question() const;
    void answer(QMessageBox::StandardButton button) const;

    // Types what is to be chosen into the open file chooser, which is taken a picture of, and opens
    // it.
    void choose(const QString &typed, const QString &shot) const;

    // Inserts a blank medium of that name, by the Recorders menu.
    void insert(const QString &type) const;

    // Burns what the page shown has chosen, with verification; shot is the beginning of the names
    // of the pictures.
    void burn(const QString &shot);

    ViewController &m_window;
    QString m_shots;

private:
    [[nodiscard]] QPixmap picture() const;
    void watch(const QString &shot);

    QString m_last; // state of the burn
};
