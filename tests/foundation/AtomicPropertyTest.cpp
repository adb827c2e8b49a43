#include "foundation/AtomicProperty.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace nivor::test {
namespace {

static_assert(sizeof(AtomicProperty<std::string>) == sizeof(std::string),
              "a property costs no memory beyond its value");

TEST(AtomicProperty, BeginsWithAnEmptyValue)
{
    EXPECT_EQ(AtomicProperty<std::string>().get(), "");
    EXPECT_EQ(AtomicProperty<int*>().get(), nullptr);
}

TEST(AtomicProperty, BeginsWithTheValueGiven)
{
    EXPECT_EQ(AtomicProperty<std::string>("text").get(), "text");
}

TEST(AtomicProperty, KeepsTheValueSet)
{
    AtomicProperty<std::string> property;
    property.set("one");
    property.set("two");
    EXPECT_EQ(property.get(), "two");
}

TEST(AtomicProperty, ReleasesTheOldValueWhenItIsReplaced)
{
    const auto shared = std::make_shared<int>(1);
    AtomicProperty<std::shared_ptr<int>> property(shared);
    EXPECT_EQ(shared.use_count(), 2);
    property.set(nullptr);
    EXPECT_EQ(shared.use_count(), 1);
}

/// Touches another property when it is destroyed, as the owner of an object may.
class TouchesAProperty {
public:
    explicit TouchesAProperty(AtomicProperty<int>& touched)
        : touched_(touched)
    {
    }
    ~TouchesAProperty() { touched_.set(touched_.get() + 1); }

    TouchesAProperty(const TouchesAProperty&) = delete;
    TouchesAProperty& operator=(const TouchesAProperty&) = delete;

private:
    AtomicProperty<int>& touched_;
};

TEST(AtomicProperty, DestroysTheOldValueWithNoLockHeld)
{
    // Whatever lock each of the many properties has, the destructor may take it.
    std::vector<std::unique_ptr<AtomicProperty<int>>> properties;
    for (int i = 0; i < 200; ++i)
        properties.push_back(std::make_unique<AtomicProperty<int>>(0));

    AtomicProperty<std::shared_ptr<TouchesAProperty>> owner;
    for (const auto& property : properties) {
        owner.set(std::make_shared<TouchesAProperty>(*property));
        owner.set(nullptr);
        EXPECT_EQ(property->get(), 1);
    }
}

TEST(AtomicProperty, IsNeverSeenHalfWritten)
{
    // Long enough not to be kept inside the string itself.
    const std::string values[] = {std::string(40, 'a'), std::string(80, 'b'), std::string()};
    AtomicProperty<std::string> property(values[0]);
    std::atomic<bool> done{false};

    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!done) {
                const std::string value = property.get();
                EXPECT_TRUE(value == values[0] || value == values[1] || value == values[2]);
            }
        });
    }
    std::vector<std::thread> writers;
    for (int i = 0; i < 2; ++i) {
        writers.emplace_back([&] {
            for (std::size_t round = 0; round < 3000; ++round)
                property.set(values[round % 3]);
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    done = true;
    for (std::thread& reader : readers)
        reader.join();
}

TEST(AtomicProperty, KeepsReferencesCountedAmongThreads)
{
    const auto shared = std::make_shared<int>(1);
    AtomicProperty<std::shared_ptr<int>> property;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 3000; ++round) {
                property.set(round % 2 == 0 ? shared : nullptr);
                const auto value = property.get();
                EXPECT_TRUE(value == nullptr || *value == 1);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    property.set(nullptr);
    EXPECT_EQ(shared.use_count(), 1);
}

}  // namespace
}  // namespace nivor::test
