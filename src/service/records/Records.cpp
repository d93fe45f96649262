#include "Records.h"

constexpr std::array<JsonField<CompanyJson>, 31> CompanyJson::fields = {{
    {"ID", &CompanyJson::ID},
    {"Email", &CompanyJson::Email},
    {"RescueEmail", &CompanyJson::RescueEmail},
    {"FirstName", &CompanyJson::FirstName},
    {"LastName", &CompanyJson::LastName},
    {"Title", &CompanyJson::Title},
    {"Birthdate", &CompanyJson::Birthdate},
    {"Namex", &CompanyJson::Namex},
    {"JobTitle", &CompanyJson::JobTitle},
    {"Tel", &CompanyJson::Tel},
    {"Mobile", &CompanyJson::Mobile},
    {"WeChat", &CompanyJson::WeChat},
    {"Skype", &CompanyJson::Skype},
    {"Industry", &CompanyJson::Industry},
    {"BusinessContinent", &CompanyJson::BusinessContinent},
    {"Country", &CompanyJson::Country},
    {"Currency", &CompanyJson::Currency},
    {"Address", &CompanyJson::Address},
    {"Website", &CompanyJson::Website},
    {"Question1", &CompanyJson::Question1},
    {"Answer1", &CompanyJson::Answer1},
    {"Question2", &CompanyJson::Question2},
    {"Answer2", &CompanyJson::Answer2},
    {"Question3", &CompanyJson::Question3},
    {"Answer3", &CompanyJson::Answer3},
    {"ReceiveAds", &CompanyJson::ReceiveAds},
    {"RegisterTime", &CompanyJson::RegisterTime},
    {"ExpireTime", &CompanyJson::ExpireTime},
    {"MaxUsers", &CompanyJson::MaxUsers},
    {"IsEnabled", &CompanyJson::IsEnabled},
    {"Memo", &CompanyJson::Memo},
}};

constexpr std::array<JsonField<UserxJson>, 11> UserxJson::fields = {{
    {"ID", &UserxJson::ID},
    {"CompanyID", &UserxJson::CompanyID},
    {"UserGroupID", &UserxJson::UserGroupID},
    {"ParentID", &UserxJson::ParentID},
    {"IsAdmin", &UserxJson::IsAdmin},
    {"Userx", &UserxJson::Userx},
    {"Passwordx", &UserxJson::Passwordx},
    {"FirstName", &UserxJson::FirstName},
    {"LastName", &UserxJson::LastName},
    {"IsEnabled", &UserxJson::IsEnabled},
    {"Memo", &UserxJson::Memo},
}};

constexpr std::array<JsonField<UserGroupJson>, 5> UserGroupJson::fields = {{
    {"ID", &UserGroupJson::ID},
    {"CompanyID", &UserGroupJson::CompanyID},
    {"Namex", &UserGroupJson::Namex},
    {"Permissionx", &UserGroupJson::Permissionx},
    {"Memo", &UserGroupJson::Memo},
}};

constexpr std::array<JsonField<FeedbackJson>, 7> FeedbackJson::fields = {{
    {"ID", &FeedbackJson::ID},
    {"UserID", &FeedbackJson::UserID},
    {"Question", &FeedbackJson::Question},
    {"AskTime", &FeedbackJson::AskTime},
    {"Answer", &FeedbackJson::Answer},
    {"AnsweredBy", &FeedbackJson::AnsweredBy},
    {"AnswerTime", &FeedbackJson::AnswerTime},
}};

constexpr std::array<JsonField<NotificationJson>, 8> NotificationJson::fields = {{
    {"ID", &NotificationJson::ID},
    {"Title", &NotificationJson::Title},
    {"Body", &NotificationJson::Body},
    {"BusinessContinent", &NotificationJson::BusinessContinent},
    {"Country", &NotificationJson::Country},
    {"IsEnabled", &NotificationJson::IsEnabled},
    {"IssuedBy", &NotificationJson::IssuedBy},
    {"IssuedTime", &NotificationJson::IssuedTime},
}};

constexpr std::array<JsonField<NotificationReadStatusJson>, 5> NotificationReadStatusJson::fields =
    {{
        {"ID", &NotificationReadStatusJson::ID},
        {"NotificationID", &NotificationReadStatusJson::NotificationID},
        {"UserxID", &NotificationReadStatusJson::UserxID},
        {"IsRead", &NotificationReadStatusJson::IsRead},
        {"ReadTime", &NotificationReadStatusJson::ReadTime},
    }};
