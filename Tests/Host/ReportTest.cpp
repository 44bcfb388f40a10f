#include "Host/Report.h"

#include <clocale>
#include <gtest/gtest.h>

namespace {

using OrvaneHost::Report;

class ReportTest : public testing::Test {
protected:
    ReportTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }
    ~ReportTest() override { std::setlocale(LC_CTYPE, "C"); }

    const Report report{"Title",
                        {{"count", "files", std::int64_t{2}}, {"name", "a name", "x\x1B[2J"}},
                        {{"rows", "Rows", {{"name", "name"}, {"id", "id"}}, {{"歯車", "1"}, {"Gehäuse", "2"}}},
                         {"none", "None", {{"name", "name"}}, {}}}};
};

TEST_F(ReportTest, TextIsAlignedByDisplayWidthAndFreeOfControls) {
    EXPECT_EQ(OrvaneHost::toText(report), "Title\n"
                                          "  files   2\n"
                                          "  a name  x\uFFFD[2J\n"
                                          "\n"
                                          "Rows (2)\n"
                                          "  name     id\n"
                                          "  歯車     1\n"
                                          "  Gehäuse  2\n");
}

} // namespace
