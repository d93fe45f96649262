// The records of the service's six tables. Flags travel as "0" and "1", times as the texts of
// DateTools; a null text is a field that is absent. Any thread.
#pragma once

#include "AbstractJson.h"

// A customer's account; one row for each registered company.
class CompanyJson : public JsonRecord<CompanyJson>
{
public:
    QString ID;
    QString Email;
    QString RescueEmail;
    QString FirstName;
    QString LastName;
    QString Title;
    QString Birthdate;
    QString Namex;
    QString JobTitle;
    QString Tel;
    QString Mobile;
    QString WeChat;
    QString Skype;
    QString Industry;
    QString BusinessContinent;
    QString Country;
    QString Currency;
    QString Address;
    QString Website;
    QString Question1;
    QString Answer1;
    QString Question2;
    QString Answer2;
    QString Question3;
    QString Answer3;
    QString ReceiveAds;
    QString RegisterTime;
    QString ExpireTime;
    QString MaxUsers;
    QString IsEnabled;
    QString Memo;

    static const std::array<JsonField<CompanyJson>, 31> fields;
};

// A user who can sign in; an administrator (IsAdmin other than 0) has every permission.
class UserxJson : public JsonRecord<UserxJson>
{
public:
    QString ID;
    QString CompanyID;
    QString UserGroupID;
    QString ParentID;
    QString IsAdmin;
    QString Userx;
    QString Passwordx;
    QString FirstName;
    QString LastName;
    QString IsEnabled;
    QString Memo;

    static const std::array<JsonField<UserxJson>, 11> fields;
};

// A permission group inside one company.
class UserGroupJson : public JsonRecord<UserGroupJson>
{
public:
    QString ID;
    QString CompanyID;
    QString Namex;
    QString Permissionx;
    QString Memo;

    static const std::array<JsonField<UserGroupJson>, 5> fields;
};

// One support question and its answer.
class FeedbackJson : public JsonRecord<FeedbackJson>
{
public:
    QString ID;
    QString UserID;
    QString Question;
    QString AskTime;
    QString Answer;
    QString AnsweredBy;
    QString AnswerTime;

    static const std::array<JsonField<FeedbackJson>, 7> fields;
};

// A message to the companies of a region; an empty continent or country means every one.
class NotificationJson : public JsonRecord<NotificationJson>
{
public:
    QString ID;
    QString Title;
    QString Body;
    QString BusinessContinent;
    QString Country;
    QString IsEnabled;
    QString IssuedBy;
    QString IssuedTime;

    static const std::array<JsonField<NotificationJson>, 8> fields;
};

// That one user has read one notification.
class NotificationReadStatusJson : public JsonRecord<NotificationReadStatusJson>
{
public:
    QString ID;
    QString NotificationID;
    QString UserxID;
    QString IsRead;
    QString ReadTime;

    static const std::array<JsonField<NotificationReadStatusJson>, 5> fields;
};
