// What the launcher tells its user: the rows of the status box and the error texts.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "autopatch/autopatch_errors.h"
#include "launcher/console_view.h"
#include "launcher/page_texts.h"
#include "launcher/splash_status.h"

namespace {

std::vector<std::string> lefts(const std::vector<SPLASH_ROW>& rows) {
    std::vector<std::string> texts;
    for (const SPLASH_ROW& row : rows) {
        texts.push_back(row.left);
    }
    return texts;
}

TEST(SplashRows, ConnectLineStandsOneRowBelowTheInstalledList) {
    SPLASH_STATUS status;
    status.connect_attempt = 3;
    // No add-on takes a row as one add-on does.
    const auto none = make_splash_rows(status);
    ASSERT_EQ(4u, none.size());
    EXPECT_EQ("None installed", none[1].right);
    EXPECT_EQ((SPLASH_ROW{"", ""}), none[2]);
    EXPECT_EQ((SPLASH_ROW{"Connect attempt 3 of 10...", ""}), none[3]);

    status.installed = {{"Application", 12}, {"Night", 0}};
    const auto two = make_splash_rows(status);
    ASSERT_EQ(5u, two.size());
    EXPECT_EQ((SPLASH_ROW{"Application", "12"}), two[1]);
    EXPECT_EQ((SPLASH_ROW{"Night", "Not installed"}), two[2]);
}

TEST(SplashRows, NeverTellMoreThanTenAttempts) {
    SPLASH_STATUS status;
    status.connect_attempt = 11;
    EXPECT_EQ("Connect attempt 10 of 10...", make_splash_rows(status).back().left);
}

TEST(SplashRows, EachStatusAddsItsSteps) {
    SPLASH_STATUS status;
    status.status = AUTOPATCH_CONNECTED;
    EXPECT_EQ("Success", make_splash_rows(status).back().right);

    status.status = AUTOPATCH_VALIDATION_SENT;
    auto rows = make_splash_rows(status);
    EXPECT_EQ((SPLASH_ROW{"Sent validation request...", "Success"}), rows[rows.size() - 2]);
    EXPECT_EQ((SPLASH_ROW{"Receiving validation response...", ""}), rows.back());

    status.status = AUTOPATCH_VALIDATED;
    rows = make_splash_rows(status);
    const std::vector<std::string> expected = {"Installed add-on versions:",
                                               "",
                                               "",
                                               "Connect attempt 1 of 10...",
                                               "Sent validation request...",
                                               "Receiving validation response...",
                                               "",
                                               "Add ons to be installed:",
                                               "",
                                               "",
                                               "Starting download..."};
    EXPECT_EQ(expected, lefts(rows));
    EXPECT_EQ("None required", rows[8].right);

    status.to_install = {{"Application", 65535}};
    rows = make_splash_rows(status);
    EXPECT_EQ((SPLASH_ROW{"Application", "65535"}), rows[8]);
}

TEST(ConsoleText, CarriesNoControlCharacters) {
    EXPECT_EQ("a [31mb c", console_text("a\x1b[31mb\nc"));
    EXPECT_EQ("caf\xC3\xA9  b", console_text("caf\xE9 \x9B"
                                             "b"));
}

TEST(ErrorText, EachCodeLinksToItsArticle) {
    for (int number = 0; number <= 9; ++number) {
        const auto code = static_cast<AUTOPATCH_ERROR_CODE>(number);
        const std::string tagged = make_error_text(code);
        EXPECT_NE(std::string::npos,
                  tagged.find(std::string("<support site:url#") + get_error_url(code) + ">"))
            << number;
        const std::string plain = make_plain_error_text(code);
        EXPECT_EQ(std::string::npos, plain.find_first_of("<>#")) << plain;
        EXPECT_NE(std::string::npos,
                  plain.find(std::string("support site (http://") + get_error_url(code) + ")"))
            << plain;
        if (number != 0) {
            EXPECT_EQ(0u, plain.find(get_error_str(code))) << plain;
        }
    }
    EXPECT_NE(std::string::npos,
              make_error_text(AUTOPATCH_ERROR_CONNECT)
                  .find("\nPlease check your internet connection. \n\nFor assistance"));
    // Red for the link, black behind it.
    EXPECT_NE(std::string::npos, make_error_text(AUTOPATCH_OK).find("<:colour#4294901760>"));
    EXPECT_NE(std::string::npos, make_error_text(AUTOPATCH_OK).find("<:colour#4278190080>."));
}

TEST(ProgressText, IsWordedAsTheBarShowsIt) {
    EXPECT_EQ("Downloading 2 of 5   37% - 1024.5 Kb/s", make_progress_text(2, 5, 37, 1024.46));
}

}  // namespace
