// What a host gets wrong: handles that are none, and pointers that lead nowhere. Each is answered with 0, and nothing
// is sent.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <thread>
#include <type_traits>
#include <vector>

#include "tests/capi/AllFunctions.h"
#include "tests/capi/CHost.h"

namespace {

/// An argument that holds nothing; a place for an output where `places` says so.
template <typename Argument>
Argument nothing(pvw_result** result, bool places)
{
    if constexpr (std::is_same_v<Argument, pvw_result**>) {
        return result;
    } else if constexpr (std::is_pointer_v<Argument>) {
        using Pointee = std::remove_pointer_t<Argument>;
        if constexpr (!std::is_const_v<Pointee>) {
            static Pointee place;
            return places ? &place : nullptr;
        } else {
            return nullptr;
        }
    } else {
        return Argument{};
    }
}

template <typename... Arguments>
int askedWithNothing(int(PVW_CALL* function)(pvw_client*, Arguments...), pvw_client* client,
                     [[maybe_unused]] pvw_result** result, [[maybe_unused]] bool places)
{
    return function(client, nothing<Arguments>(result, places)...);
}

template <typename... Arguments>
constexpr bool bringsResult(int(PVW_CALL*)(pvw_client*, Arguments...))
{
    return (std::is_same_v<Arguments, pvw_result**> || ...);
}

void expectEachRefuses(pvw_client* client, const char* what)
{
    std::apply(
        [&](const auto&... functions) {
            const auto expectRefusal = [&](const char* name, auto* function) {
                pvw_result* result = reinterpret_cast<pvw_result*>(&client);
                EXPECT_EQ(askedWithNothing(function, client, &result, true), 0) << name << " of " << what;
                EXPECT_EQ(result == nullptr, bringsResult(function)) << name << " of " << what;
            };
            (expectRefusal(functions.first, functions.second), ...);
        },
        kAllFunctions);
}

int freedOf(pvw_client* client)
{
    return pvw_cancel(client) + pvw_set_deadline(client, 1) + pvw_on_refresh(client, nullptr, nullptr) +
           pvw_on_transfer_progress(client, nullptr, nullptr) + pvw_on_exchange(client, nullptr, nullptr) +
           pvw_on_timer(client, 1) + pvw_client_free(client);
}

TEST(HandlesTest, NoClientAtAll)
{
    expectEachRefuses(nullptr, "no client");
    EXPECT_EQ(freedOf(nullptr), 0);
}

TEST(HandlesTest, AClientThatIsNone)
{
    int other = 0;
    const auto madeUp = reinterpret_cast<pvw_client*>(&other);
    expectEachRefuses(madeUp, "something else");
    EXPECT_EQ(freedOf(madeUp), 0);
}

TEST_F(CHost, AClientThatWasFreed)
{
    const auto freed = client;
    EXPECT_EQ(pvw_client_free(freed), 1);
    client = nullptr;

    pvw_client* next = nullptr;
    ASSERT_EQ(pvw_client_new(textOf(u""), &next), 1);
    EXPECT_NE(next, freed);
    expectEachRefuses(freed, "a freed client");
    EXPECT_EQ(freedOf(freed), 0);
    EXPECT_EQ(pvw_client_free(next), 1);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(CHost, NowhereToPutWhatComesBack)
{
    const auto expectRefusal = [&](const char* name, auto* function) {
        if (!bringsResult(function)) return;
        pvw_result* result = reinterpret_cast<pvw_result*>(&client);
        EXPECT_EQ(askedWithNothing(function, client, &result, false), 0) << name;
        EXPECT_EQ(result, nullptr) << name;
        EXPECT_EQ(askedWithNothing(function, client, nullptr, true), 0) << name;
    };
    std::apply([&](const auto&... functions) { (expectRefusal(functions.first, functions.second), ...); },
               kAllFunctions);
    EXPECT_EQ(pvw_get_network_error(client, nullptr), 0);
    EXPECT_EQ(pvw_get_network_error_kind(client, nullptr), 0);
    EXPECT_EQ(pvw_get_refresh_interval(client, nullptr), 0);
    EXPECT_EQ(pvw_client_new(textOf(u""), nullptr), 0);
    EXPECT_EQ(pvw_client_copy(client, nullptr), 0);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(CHost, ATextThatIsNowhere)
{
    const pvw_text nowhere{nullptr, 3};
    EXPECT_EQ(pvw_get_session_info(client, nowhere), 0);
    EXPECT_EQ(pvw_set_root_cred(client, {nullptr, PVW_ZERO_TERMINATED}), 0);
    pvw_client* next = client;
    EXPECT_EQ(pvw_client_new(nowhere, &next), 0);
    EXPECT_EQ(next, nullptr);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(CHost, RecordsOfNoKnownSize)
{
    EXPECT_EQ(pvw_edit_tab(client, textOf(u"c"), textOf(u"W"), nullptr), 0);
    EXPECT_EQ(pvw_edit_tab_order(client, textOf(u"c"), textOf(u"W"), nullptr, 2), 0);

    std::array<pvw_tab, 2> tabs{};
    for (pvw_tab& tab : tabs) tab.ID = tab.name = textOf(u"t");
    for (const std::size_t size : {std::size_t{0}, sizeof(pvw_tab) - 1, sizeof(pvw_tab) + 1}) {
        tabs[0].size = tabs[1].size = size;
        EXPECT_EQ(pvw_edit_tab(client, textOf(u"c"), textOf(u"W"), tabs.data()), 0) << size;
        EXPECT_EQ(pvw_edit_tab_order(client, textOf(u"c"), textOf(u"W"), tabs.data(), 2), 0) << size;
    }
    tabs[0].size = sizeof(pvw_tab);
    tabs[1].size = 2 * sizeof(pvw_tab);
    EXPECT_EQ(pvw_edit_tab_order(client, textOf(u"c"), textOf(u"W"), tabs.data(), 2), 0);
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(CHost, AResultThatWasFreed)
{
    pvw_text cred{};
    pvw_result* result = nullptr;
    ASSERT_EQ(pvw_get_root_cred(client, &cred, &result), 1);
    EXPECT_EQ(pvw_result_free(result), 1);
    EXPECT_EQ(pvw_result_free(result), 0);
    EXPECT_EQ(pvw_result_free(nullptr), 0);
    EXPECT_EQ(pvw_result_free(reinterpret_cast<pvw_result*>(&cred)), 0);
    EXPECT_EQ(pvw_result_free(reinterpret_cast<pvw_result*>(client)), 0);
}

TEST_F(CHost, AResultOutlivesItsClientAndIsFreedByAnyThread)
{
    ASSERT_EQ(pvw_set_root_cred(client, textOf(u"kept")), 1);
    pvw_text cred{};
    pvw_result* result = nullptr;
    ASSERT_EQ(pvw_get_root_cred(client, &cred, &result), 1);
    EXPECT_EQ(pvw_client_free(client), 1);
    client = nullptr;
    EXPECT_EQ(std::u16string_view(cred.units, cred.length), u"kept");
    std::thread([result] { EXPECT_EQ(pvw_result_free(result), 1); }).join();
}

TEST_F(CHost, ManyMoreItemsThanThereIsMemory)
{
    std::vector<pvw_tab> tabs(1);  // behind which a sanitizer watches
    tabs[0].size = sizeof(pvw_tab);
    const std::vector<pvw_text> texts(1, textOf(u"W"));
    pvw_role_item_list roles{nullptr, 77};
    pvw_result* result = nullptr;
    for (const std::size_t count : {SIZE_MAX, SIZE_MAX / sizeof(pvw_text)}) {
        EXPECT_EQ(pvw_edit_tab_order(client, textOf(u"c"), texts[0], tabs.data(), count), 0) << count;
        EXPECT_EQ(pvw_get_role(client, textOf(u"c"), texts.data(), count, &roles, &result), 0) << count;
    }
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(CHost, AListThatIsEmptyCostsNothing)
{
    EXPECT_EQ(pvw_edit_tab_order(client, textOf(u"c"), textOf(u"W"), nullptr, 0), 0);
    EXPECT_EQ(requestCount(), 0U);
    reply("SUCCESS", "");
    pvw_role_item_list roles{nullptr, 77};
    pvw_result* result = nullptr;
    EXPECT_EQ(pvw_get_role(client, textOf(u"c"), nullptr, 0, &roles, &result), 1);
    EXPECT_EQ(roles.count, 0U);
    EXPECT_EQ(pvw_result_free(result), 1);
}

}  // namespace
