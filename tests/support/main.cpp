// The tests' main: like many hosts it takes the user's locale, so that a number formatted by it shows itself.

#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    if (std::getenv("LUMBRA_DECIMAL_COMMA") != nullptr && std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
        std::fputs("The locale with a decimal comma isn't in use: this run would prove nothing.\n", stderr);
        return 1;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
