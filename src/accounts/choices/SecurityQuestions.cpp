#include "SecurityQuestions.h"

#include "BundleUtil.h"
#include "Localized.h"
#include "PopUps.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

struct Question
{
    const char *group;
    QString CompanyJson::*question;
    QString CompanyJson::*answer;
    const char *noQuestion;
    const char *chooseQuestion;
    const char *wrongQuestion;
    const char *correctQuestion;
    const char *noAnswer;
    const char *enterAnswer;
    const char *wrongAnswer;
    const char *correctAnswer;
};

// Their texts stand in the table of each page with questions: here in that of the page that needs
// all of them.
constexpr std::array<Question, SecurityQuestions::count> questions{{
    {"Group1", &CompanyJson::Question1, &CompanyJson::Answer1,
     QT_TRANSLATE_NOOP("Forgot", "The first security question cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the first security question."),
     QT_TRANSLATE_NOOP("Forgot", "The first security question is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the correct first question."),
     QT_TRANSLATE_NOOP("Forgot", "The first answer cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please enter the first answer."),
     QT_TRANSLATE_NOOP("Forgot", "The first answer is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please correct the first answer.")},
    {"Group2", &CompanyJson::Question2, &CompanyJson::Answer2,
     QT_TRANSLATE_NOOP("Forgot", "The second security question cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the second security question."),
     QT_TRANSLATE_NOOP("Forgot", "The second security question is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the correct second question."),
     QT_TRANSLATE_NOOP("Forgot", "The second answer cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please enter the second answer."),
     QT_TRANSLATE_NOOP("Forgot", "The second answer is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please correct the second answer.")},
    {"Group3", &CompanyJson::Question3, &CompanyJson::Answer3,
     QT_TRANSLATE_NOOP("Forgot", "The third security question cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the third security question."),
     QT_TRANSLATE_NOOP("Forgot", "The third security question is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please choose the correct third question."),
     QT_TRANSLATE_NOOP("Forgot", "The third answer cannot be null."),
     QT_TRANSLATE_NOOP("Forgot", "Please enter the third answer."),
     QT_TRANSLATE_NOOP("Forgot", "The third answer is wrong."),
     QT_TRANSLATE_NOOP("Forgot", "Please correct the third answer.")},
}};

// Those that the other pages need, for lupdate.
[[maybe_unused]] constexpr std::array textsOfOtherPages{
    QT_TRANSLATE_NOOP("Register", "The first security question cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please choose the first security question."),
    QT_TRANSLATE_NOOP("Register", "The first answer cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please enter the first answer."),
    QT_TRANSLATE_NOOP("Register", "The second security question cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please choose the second security question."),
    QT_TRANSLATE_NOOP("Register", "The second answer cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please enter the second answer."),
    QT_TRANSLATE_NOOP("Register", "The third security question cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please choose the third security question."),
    QT_TRANSLATE_NOOP("Register", "The third answer cannot be null."),
    QT_TRANSLATE_NOOP("Register", "Please enter the third answer."),
    QT_TRANSLATE_NOOP("ChangePwd", "The first security question cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please choose the first security question."),
    QT_TRANSLATE_NOOP("ChangePwd", "The first answer cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please enter the first answer."),
    QT_TRANSLATE_NOOP("ChangePwd", "The second security question cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please choose the second security question."),
    QT_TRANSLATE_NOOP("ChangePwd", "The second answer cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please enter the second answer."),
    QT_TRANSLATE_NOOP("ChangePwd", "The third security question cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please choose the third security question."),
    QT_TRANSLATE_NOOP("ChangePwd", "The third answer cannot be null."),
    QT_TRANSLATE_NOOP("ChangePwd", "Please enter the third answer."),
};

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

void SecurityQuestions::show(const CompanyJson &company)
{
    for (std::size_t i = 0; i < count; ++i) {
        const Question &stored = questions.at(i);
        PopUps::select(popUp(i), m_bundleUtil.indexOfSecurityQuestion(
                                     QLatin1StringView(stored.group), company.*stored.question));
        answerField(i)->setText(company.*stored.answer);
    }
}

void SecurityQuestions::store(CompanyJson &company) const
{
    for (std::size_t i = 0; i < count; ++i) {
        company.*questions.at(i).question = question(i);
        company.*questions.at(i).answer = answer(i);
    }
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

Check SecurityQuestions::isChosen(std::size_t number, const char *table) const
{
    return {[this, number] { return question(number).isNull(); },
            localized(table, questions.at(number).noQuestion),
            localized(table, questions.at(number).chooseQuestion), popUp(number)};
}

Check SecurityQuestions::isAnswered(std::size_t number, const char *table) const
{
    return {[this, number] { return answer(number).isEmpty(); },
            localized(table, questions.at(number).noAnswer),
            localized(table, questions.at(number).enterAnswer), answerField(number)};
}

QList<Check> SecurityQuestions::checks(const char *table) const
{
    QList<Check> all;
    for (std::size_t i = 0; i < count; ++i)
        all << isChosen(i, table) << isAnswered(i, table);
    return all;
}

QList<Check> SecurityQuestions::checks(const char *table,
                                       const std::optional<CompanyJson> &company) const
{
    QList<Check> all;
    for (std::size_t i = 0; i < count; ++i) {
        const Question &texts = questions.at(i);
        const auto differs = [&company](QString CompanyJson::*stored, const QString &given) {
            return !company || (*company).*stored != given;
        };
        all << isChosen(i, table)
            << Check{[=, this] { return differs(texts.question, question(i)); },
                     localized(table, texts.wrongQuestion), localized(table, texts.correctQuestion),
                     popUp(i)}
            << isAnswered(i, table)
            << Check{[=, this] { return differs(texts.answer, answer(i)); },
                     localized(table, texts.wrongAnswer), localized(table, texts.correctAnswer),
                     answerField(i)};
    }
    return all;
}
