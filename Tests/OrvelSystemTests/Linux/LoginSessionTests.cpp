#include "OrvelSystem/Linux/LoginSession.h"

TEST(LoginSession, IsNeverAStaleOneOrThatOfAnotherUser) {
    using Id = std::optional<std::string>;
    constexpr uid_t user = 1000;
    struct Row {
        const char* named;
        int sessions;
        std::optional<uid_t> owner;
        Id ofProcess, ofDisplay;
        Id chosen;
    };
    const Row rows[] = {
        {"3", 2, user, "4", "5", "3"},     {"3", 2, {}, "4", "5", "4"},  // closed session
        {"3", 2, 1001, "4", "5", "4"},                                   // session of another user
        {"3", 2, {}, {}, "5", "5"},    // service of the user manager
        {"3", 0, {}, "4", "5", "3"},   // no record to compare with
        {"3", -2, {}, "4", "5", "3"},  // no logind
        {nullptr, 2, user, "4", "5", "4"}, {"", 2, user, {}, {}, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LoginSession::chosen(row.named, user,
                                       {.sessions = [&] { return row.sessions; },
                                        .owner = [&](const auto&) { return row.owner; },
                                        .ofProcess = [&] { return row.ofProcess; },
                                        .ofDisplay = [&] { return row.ofDisplay; }}),
                  row.chosen)
            << "row " << &row - rows;
}
