// The three security questions of a form, each a pop-up with one group of questions and a field for
// the answer. Choosing a question moves on to its answer. Main thread.
#pragma once

#include "Checks.h"
#include "Records.h"

#include <QObject>

#include <array>
#include <optional>

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

    // The company's questions and answers; a question that is not in its group is not selected.
    void show(const CompanyJson &company);
    // Questions are kept as they stand in the lists, whatever the language.
    void store(CompanyJson &company) const;

    // That each question is chosen and answered. The texts are of the page's table.
    [[nodiscard]] QList<Check> checks(const char *table) const;
    // That each is chosen and answered as the company did; where there is none, none is right.
    [[nodiscard]] QList<Check> checks(const char *table,
                                      const std::optional<CompanyJson> &company) const;

private:
    void question1PopUpButtonAction(int index) { goToAnswer(0, index); }
    void question2PopUpButtonAction(int index) { goToAnswer(1, index); }
    void question3PopUpButtonAction(int index) { goToAnswer(2, index); }
    void goToAnswer(std::size_t number, int index);

    [[nodiscard]] QStringList group(std::size_t number) const;
    [[nodiscard]] QString question(std::size_t number) const; // null where none is chosen
    [[nodiscard]] QString answer(std::size_t number) const;
    [[nodiscard]] QComboBox *popUp(std::size_t number) const;
    [[nodiscard]] QLineEdit *answerField(std::size_t number) const;

    [[nodiscard]] Check isChosen(std::size_t number, const char *table) const;
    [[nodiscard]] Check isAnswered(std::size_t number, const char *table) const;

    BundleUtil &m_bundleUtil;
    std::array<Controls, count> m_controls;
};
