#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"

#include "Support/MainLoopChecks.h"
#include "Support/ManualLoop.h"

namespace {

class PasswordVerifier : public testing::Test {
  protected:
    void verify(double timeout, OpenDirectoryPasswordVerifier::Check check) {
        verifier =
            std::make_unique<OpenDirectoryPasswordVerifier>("jo", timeout, loop, std::move(check));
        verifier->onAnswer = [this](const PasswordResult& result) {
            EXPECT_TRUE(results.empty()) << "before the caller gets the result";
            answers.push_back(result);
        };
        spawn(loop, keep(*verifier, results));
        loop.drain();
    }
    static Task<void> keep(OpenDirectoryPasswordVerifier& verifier,
                           std::vector<PasswordResult>& results) {
        PasswordResult result = co_await verifier.verify(Password("open sesame"));
        results.push_back(result);
    }
    ManualLoop loop;
    std::unique_ptr<OpenDirectoryPasswordVerifier> verifier;
    std::vector<PasswordResult> results;
    std::vector<PasswordResult> answers;
};

TEST_F(PasswordVerifier, AsksOffTheMainThreadWithThePasswordAndTheAccount) {
    std::thread::id asked;
    verify(5, [&](const Password& password, const std::string& userName) -> PasswordResult {
        asked = std::this_thread::get_id();
        if (password == Password("open sesame") && userName == "jo") return PasswordRejected{};
        return PasswordAccepted{};
    });
    ASSERT_TRUE(eventually([this] { loop.drain(); }, [this] { return !results.empty(); }));
    EXPECT_EQ(results, std::vector<PasswordResult>{PasswordRejected{}});
    EXPECT_EQ(answers, results);
    EXPECT_NE(asked, std::this_thread::get_id());
}

TEST_F(PasswordVerifier, GivesUpOnACheckThatHangsAndDropsItsAnswer) {
    std::promise<void> release;
    std::promise<void> returned;
    verify(5.5,
           [gate = release.get_future().share(), &returned](const Password&, const std::string&) {
               gate.wait();
               returned.set_value_at_thread_exit();
               return PasswordResult(PasswordAccepted{});
           });
    loop.advance(5.4);
    EXPECT_TRUE(results.empty());
    loop.advance(0.1);
    const std::vector<PasswordResult> gaveUp{PasswordUnavailable{"timed out after 5 s"}};
    EXPECT_EQ(results, gaveUp);

    // The worker must not access the verifier any more.
    verifier.reset();
    release.set_value();
    returned.get_future().wait();
    loop.advance(60);
    EXPECT_EQ(results, gaveUp);
    EXPECT_TRUE(answers.empty());
}

TEST_F(PasswordVerifier, AnAnswerAtTheMomentOfTheTimeOutCountsOnce) {
    std::promise<void> returned;
    verify(5, [&returned](const Password&, const std::string&) {
        returned.set_value_at_thread_exit();
        return PasswordResult(PasswordAccepted{});
    });
    returned.get_future().wait();
    // The answer is already queued in the loop, and the time-out is due in the same turn.
    loop.advance(5);
    EXPECT_EQ(results, std::vector<PasswordResult>{PasswordAccepted{}});
}

}  // namespace
