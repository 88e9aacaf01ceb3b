#include <gtest/gtest.h>

#include "Platform/Errors.h"
#include "Platform/Files.h"

using namespace Platform;

TEST(Paths, AreCombinedAndResolved) {
    struct Case {
        const WideChar *base, *rest, *result;
    };
    for (const auto& [base, rest, expected] : {Case{u"C:\\Data", u"a.txt", u"C:\\Data\\a.txt"},
                                               Case{u"C:\\Data\\", u"a.txt", u"C:\\Data\\a.txt"},
                                               Case{u"/data/", u"logs/a", u"/data/logs/a"},
                                               Case{u"/data", u"logs", u"/data\\logs"},
                                               Case{u"/data//x", u"y\\\\z", u"/data/x\\y\\z"},
                                               Case{u"C:\\Data", u"logs\\", u"C:\\Data\\logs\\"},
                                               Case{u"C:\\Data\\", u"", u"C:\\Data\\"},
                                               Case{u"", u"a", u"a"},
                                               Case{u"C:\\a\\b\\", u"..\\c", u"C:\\a\\c"},
                                               Case{u"C:\\a\\b", u"..", u"C:\\a"},
                                               Case{u"C:\\a\\b", u"..\\", u"C:\\a\\"},
                                               Case{u"C:\\a", u"..\\..\\..\\b", u"C:\\b"},
                                               Case{u"C:\\a", u"..", u"C:\\"},
                                               Case{u"/a/./b", u"./c/.", u"/a/b\\c"},
                                               Case{u"/a", u"...\\.b", u"/a\\...\\.b"},
                                               Case{u"a", u"..\\..\\b", u"..\\b"},
                                               Case{u"a", u"..", u"."},
                                               Case{u"C:\\a", u"/b/../c", u"/c"},
                                               Case{u"C:\\a", u"D:b", u"D:b"},
                                               Case{u"C:\\a", u"D:\\b", u"D:\\b"},
                                               Case{u"\\\\server\\share", u"x", u"\\\\server\\share\\x"}}) {
        WideChar result[260];
        ASSERT_EQ(PathCombineW(result, base, rest), result);
        EXPECT_EQ(WideString{result}, expected);
    }
}
