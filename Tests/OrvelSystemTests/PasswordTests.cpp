#include "OrvelSystem/Password.h"

TEST(Password, GrowsAndShrinksByCharacters) {
    const std::string family = "👨‍👩‍👧";
    Password password;
    EXPECT_TRUE(password.empty());
    password.removeLastCharacter();
    EXPECT_TRUE(password.append("a"));
    EXPECT_TRUE(password.append(family));
    EXPECT_TRUE(password.append(""));
    EXPECT_EQ(password.view(), "a" + family);
    EXPECT_EQ(password.characterCount(), 2U);
    password.removeLastCharacter();
    EXPECT_EQ(password.view(), "a");
    password.removeLastCharacter();
    EXPECT_TRUE(password.empty());
    EXPECT_EQ(password.view(), "");
    EXPECT_TRUE(password.append("b"));
    EXPECT_EQ(password.view(), "b");
}

TEST(Password, BytesThatAreNotUTF8CanBeRemovedToo) {
    Password password("a\xff\xe2\x82");
    int removed = 0;
    for (; !password.empty() && removed < 10; ++removed) password.removeLastCharacter();
    EXPECT_EQ(removed, 3);
}

TEST(Password, TakesAllOrNothingUpToItsCapacity) {
    Password password(std::string(Password::capacity - 1, 'x'));
    EXPECT_FALSE(password.append("é"));
    EXPECT_EQ(password.view().size(), Password::capacity - 1);
    EXPECT_TRUE(password.append("y"));
    EXPECT_FALSE(password.append("z"));

    const Password cut(std::string(Password::capacity - 1, 'x') + "é");
    EXPECT_EQ(cut.view(), std::string(Password::capacity - 1, 'x'));
    EXPECT_TRUE(Password(std::string(5000, '\x80')).view().size() <= Password::capacity);
}

TEST(Password, WipesWhatIsRemoved) {
    Password password("secret");
    const char* const bytes = password.view().data();
    password.removeLastCharacter();
    password.removeLastCharacter();
    EXPECT_EQ(std::string_view(bytes, 6), std::string_view("secr\0\0", 6));
    // Freed memory is wiped and unmapped, so reading it ends the process.
    const auto readDropped = [&] {
        password.clear();
        std::_Exit(*static_cast<const volatile char*>(bytes) == 's' ? 1 : 0);
    };
    EXPECT_DEATH(readDropped(), "");
    password.clear();
}

TEST(Password, MovesLeaveNothingBehind) {
    Password a("secret");
    const Password copy = a.clone();
    Password b = std::move(a);
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(b, copy);
    EXPECT_EQ(copy.view(), "secret");
    a = std::move(b);
    EXPECT_EQ(a.view(), "secret");
    EXPECT_TRUE(b.empty());
    a.clear();
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(a, Password());
    EXPECT_FALSE(copy == Password("secreT"));
    EXPECT_FALSE(copy == Password("secrets"));
    EXPECT_FALSE(copy == Password());
}
