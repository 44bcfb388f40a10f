#include "Server/Orvane/FolderContentLink.h"

#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::FolderContentLink;

static_assert(!std::is_default_constructible_v<FolderContentLink>);
static_assert(!std::is_constructible_v<FolderContentLink, std::string>);

std::string text(const FolderContentLink& link) {
    return link.href().ToString(false);
}

TEST(FolderContentLink, IsFormedFromTheUrnAndTheOptionsOfTheMoment) {
    const ScopedState current = scopedOption("current", L"orvaneServiceUrl", L"https://current");
    const ScopedState other = scopedOption("other", L"orvaneServiceUrl", L"https://other/\u00FC");
    const ScopedState v3 = scopedOption("current", L"orvaneV3ServiceUrl", L"https://v3");
    const ScopedState name = scopedCurrentOptions("current");
    const FolderContentLink before = FolderContentLink::fromUrn("an.urn");
    EXPECT_EQ(text(FolderContentLink::fromUrn("a:b?c d", "other")), "https://other/\xC3\xBC/folders/a:b?c d/content");
    EXPECT_EQ(text(FolderContentLink::fromUrn("", "unset")), "/folders//content");
    const ScopedState flag = scopedFlag("data-show-non-cad-components");
    EXPECT_EQ(text(FolderContentLink::fromUrn("an.urn", "current")),
              "https://current/folders/an.urn/content?storageType=BINARY,REFERENCE");
    EXPECT_EQ(text(before), "https://current/folders/an.urn/content");
}

TEST(FolderContentLink, KeepsAnyContentLinkAsItIs) {
    for (const char* link : {"", "not a link", "https://x/orvanedm/folders/f/content"}) {
        const FolderContentLink kept = FolderContentLink::fromContentLink(link);
        kept.href().SetQueryVariable("a", "b");
        EXPECT_EQ(text(kept), link) << "a change to the URL is not one to the link";
    }
}

TEST(FolderContentLink, IsRecognisedByItsTwoWords) {
    for (const char* link : {"https://x/orvanedm/folders/f/content", "/content orvanedm", "orvanedm/content/more"})
        EXPECT_TRUE(FolderContentLink::isOrvaneFolderContentLink(link)) << link;
    for (const char* link : {"", "orvanedm", "/content", "ORVANEDM/content", "orvanedm/Content", "orvaned/content"})
        EXPECT_FALSE(FolderContentLink::isOrvaneFolderContentLink(link)) << link;
}

} // namespace
