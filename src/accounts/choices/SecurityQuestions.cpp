#include "SecurityQuestions.h"

#include "BundleUtil.h"
#include "Localized.h"
#include "PopUps.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

struct Texts
{
    const char *group;
    const char *noQuestion;
    const char *chooseQuestion;
    const char *noAnswer;
    const char *enterAnswer;
};

// The table of each page with questions has these texts.
constexpr std::array<Texts, SecurityQuestions::count> texts{{
    {"Group1", QT_TRANSLATE_NOOP("Register", "The first security question cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please choose the first security question."),
     QT_TRANSLATE_NOOP("Register", "The first answer cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please enter the first answer.")},
    {"Group2", QT_TRANSLATE_NOOP("Register", "The second security question cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please choose the second security question."),
     QT_TRANSLATE_NOOP("Register", "The second answer cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please enter the second answer.")},
    {"Group3", QT_TRANSLATE_NOOP("Register", "The third security question cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please choose the third security question."),
     QT_TRANSLATE_NOOP("Register", "The third answer cannot be null."),
     QT_TRANSLATE_NOOP("Register", "Please enter the third answer.")},
}};

}

SecurityQuestions::SecurityQuestions(BundleUtil &bundleUtil,
                                     const std::array<Controls, count> &controls)
    : m_bundleUtil(bundleUtil)
    , m_controls(controls)
{
    constexpr std::array actions{&SecurityQuestions::question1PopUpButtonAction,
                                 &SecurityQuestions::question2PopUpButtonAction,
                                 &SecurityQuestions::question3PopUpButtonAction};
    for (std::size_t i = 0; i < count; ++i)
        connect(popUp(i), &QComboBox::activated, this, actions.at(i));
}

void SecurityQuestions::initQuestionPopUp()
{
    for (std::size_t i = 0; i < count; ++i)
        if (popUp(i)->count() == 0)
            PopUps::fill(popUp(i), group(i));
}

void SecurityQuestions::goToAnswer(std::size_t number, int index)
{
    if (index >= 1)
        answerField(number)->setFocus();
}

void SecurityQuestions::select(std::size_t number, const QString &question, const QString &answer)
{
    PopUps::select(popUp(number), m_bundleUtil.indexOfSecurityQuestion(
                                      QLatin1StringView(texts.at(number).group), question));
    answerField(number)->setText(answer);
}

QStringList SecurityQuestions::group(std::size_t number) const
{
    switch (number) {
    case 0:
        return m_bundleUtil.getFirstGroupSecurityQuestions();
    case 1:
        return m_bundleUtil.getSecondGroupSecurityQuestions();
    default:
        return m_bundleUtil.getThirdGroupSecurityQuestions();
    }
}

QString SecurityQuestions::question(std::size_t number) const
{
    const int index = popUp(number)->currentIndex();
    return index < 1 ? QString() : group(number).value(index);
}

QString SecurityQuestions::answer(std::size_t number) const
{
    return answerField(number)->text();
}

QComboBox *SecurityQuestions::popUp(std::size_t number) const
{
    return m_controls.at(number).questionPopUpButton;
}

QLineEdit *SecurityQuestions::answerField(std::size_t number) const
{
    return m_controls.at(number).answerField;
}

Check SecurityQuestions::questionCheck(std::size_t number, const char *table) const
{
    return {[this, number] { return question(number).isNull(); },
            localized(table, texts.at(number).noQuestion),
            localized(table, texts.at(number).chooseQuestion), popUp(number)};
}

Check SecurityQuestions::answerCheck(std::size_t number, const char *table) const
{
    return {[this, number] { return answer(number).isEmpty(); },
            localized(table, texts.at(number).noAnswer),
            localized(table, texts.at(number).enterAnswer), answerField(number)};
}

QList<Check> SecurityQuestions::checks(const char *table) const
{
    QList<Check> all;
    for (std::size_t i = 0; i < count; ++i)
        all << questionCheck(i, table) << answerCheck(i, table);
    return all;
}
