#include "framework/zeb_array.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

TEST(ZebArray, CapacityFollowsTheFrameworkGrowthRule) {
    ZebArray<int> a;
    EXPECT_EQ(a.GetCapacity(), 10);
    EXPECT_EQ(a.GetGrowStep(), 1);
    std::vector<int> capacities;
    for (int i = 0; i < 120; ++i) {
        const int before = a.GetCapacity();
        a.Add(i);
        if (a.GetCapacity() != before) capacities.push_back(a.GetCapacity());
    }
    // steps 1, 4, 7, 10, then x1.2 truncated: 12, 14, 16, 19, 22
    EXPECT_EQ(capacities, (std::vector<int>{11, 15, 22, 32, 44, 58, 74, 93, 115, 141}));
    for (int i = 0; i < 120; ++i) EXPECT_EQ(a[i], i);

    a.Reset();
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 10);
    EXPECT_EQ(a.GetGrowStep(), 1);
}

// Adding many at once leaves the array exactly as adding them one by one: the same elements,
// capacity and step, from any start.
TEST(ZebArray, AddingManyAtOnceIsAddingThemOneByOne) {
    for (int start : {0, 9, 10, 11, 57}) {
        for (int count : {0, 1, 4, 5, 40, 1000, 123457}) {
            SCOPED_TRACE(std::to_string(start) + " + " + std::to_string(count));
            ZebArray<std::wstring> oneByOne, atOnce;
            for (int i = 0; i < start; ++i) {
                oneByOne.Add(std::to_wstring(i));
                atOnce.Add(std::to_wstring(i));
            }
            std::vector<std::wstring> more;
            for (int i = 0; i < count; ++i) more.push_back(L"row " + std::to_wstring(start + i));
            for (const std::wstring& text : more) oneByOne.Add(text);
            atOnce.AddMoved(more.data(), count);
            ASSERT_EQ(atOnce.GetSize(), oneByOne.GetSize());
            EXPECT_EQ(atOnce.GetCapacity(), oneByOne.GetCapacity());
            EXPECT_EQ(atOnce.GetGrowStep(), oneByOne.GetGrowStep());
            for (int i = 0; i < atOnce.GetSize(); ++i) ASSERT_EQ(atOnce[i], oneByOne[i]) << i;
            atOnce.Add(L"next");
            oneByOne.Add(L"next");
            EXPECT_EQ(atOnce.GetCapacity(), oneByOne.GetCapacity());
        }
    }
}

TEST(ZebArray, RemovalShiftsTheTailAndKeepsNonTrivialElementsIntact) {
    ZebArray<std::wstring> a;
    for (int i = 0; i < 30; ++i)
        a.Add(std::wstring(40, static_cast<wchar_t>(L'a' + i % 26)) + std::to_wstring(i));
    a.RemoveAt(0);
    a.RemoveAt(10);
    a.RemoveAt(a.GetSize() - 1);
    ASSERT_EQ(a.GetSize(), 27);
    EXPECT_EQ(a[0], std::wstring(40, L'b') + L"1");
    EXPECT_EQ(a[9], std::wstring(40, L'k') + L"10");
    EXPECT_EQ(a[10], std::wstring(40, L'm') + L"12");
    EXPECT_EQ(a[26], std::wstring(40, L'c') + L"28");
    EXPECT_THROW(a.RemoveAt(27), std::out_of_range);

    ZebArray<std::vector<std::wstring>> rows;
    for (int i = 0; i < 50; ++i) rows.Add({L"M" + std::to_wstring(i), L"2.5", L""});
    ZebArray<std::vector<std::wstring>> copy = rows;
    rows.RemoveAll();
    ASSERT_EQ(copy.GetSize(), 50);
    EXPECT_EQ(copy[49][0], L"M49");
    // adding an element of the array to itself while it grows must not read freed memory
    ZebArray<std::wstring> self;
    for (int i = 0; i < 10; ++i) self.Add(L"long enough to live on the heap " + std::to_wstring(i));
    self.Add(self[3]);
    EXPECT_EQ(self[10], L"long enough to live on the heap 3");
}

TEST(ZebArray, DestroysEveryElementOnce) {
    auto counter = std::make_shared<int>(0);
    {
        ZebArray<std::shared_ptr<int>> a;
        for (int i = 0; i < 25; ++i) a.Add(counter);
        EXPECT_EQ(counter.use_count(), 26);
        a.RemoveAt(3);
        EXPECT_EQ(counter.use_count(), 25);
    }
    EXPECT_EQ(counter.use_count(), 1);
}
