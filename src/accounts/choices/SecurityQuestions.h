// The three security questions of a form, each a pop-up with one group of questions and a field for
// the answer. Choosing a question moves on to its answer. Main thread.
#pragma once

#include "Checks.h"

#include <QObject>

#include <array>

class BundleUtil;
class QComboBox;
class QLineEdit;

class SecurityQuestions : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QComboBox *questionPopUpButton;
        QLineEdit *answerField;
    };
    static constexpr std::size_t count = 3;

    // The lists are the page's and outlive this.
    SecurityQuestions(BundleUtil &bundleUtil, const std::array<Controls, count> &controls);

    // Fills the pop-ups that have no items yet.
    void initQuestionPopUp();

    // By the stored texts; a question that is not in its group is not selected.
    void select(std::size_t number, const QString &question, const QString &answer);

    // Of question 0, 1 or 2: the question as it is stored, null where none is chosen; its answer.
    [[nodiscard]] QString question(std::size_t number) const;
    [[nodiscard]] QString answer(std::size_t number) const;

    [[nodiscard]] QComboBox *popUp(std::size_t number) const;
    [[nodiscard]] QLineEdit *answerField(std::size_t number) const;

    // That a question is chosen, and that it is answered. The texts are of the page's table.
    [[nodiscard]] Check questionCheck(std::size_t number, const char *table) const;
    [[nodiscard]] Check answerCheck(std::size_t number, const char *table) const;
    // Both of every question, in order.
    [[nodiscard]] QList<Check> checks(const char *table) const;

private:
    void question1PopUpButtonAction(int index) { goToAnswer(0, index); }
    void question2PopUpButtonAction(int index) { goToAnswer(1, index); }
    void question3PopUpButtonAction(int index) { goToAnswer(2, index); }
    void goToAnswer(std::size_t number, int index);

    [[nodiscard]] QStringList group(std::size_t number) const;

    BundleUtil &m_bundleUtil;
    std::array<Controls, count> m_controls;
};
