// The instance's block in the host's project: its bytes, what becomes of damaged and foreign blocks, and every
// failing handle call.

#include "effect/frame/sequence/SequenceRecord.h"
#include "host/EffectModule.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"

#include <gtest/gtest.h>

#include <random>

namespace kovalune::test {
namespace {

using host::CommandResult;
using Bytes = std::vector<std::byte>;

Bytes bytes(std::initializer_list<int> values) {
    Bytes result;
    for (const int value : values) {
        result.push_back(static_cast<std::byte>(value));
    }
    return result;
}

const Bytes kNew = bytes({'q', 'e', 's', 'p', 0, 0, 0, 0, 24, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
const Bytes kFlattenedNew =
    bytes({'q', 'e', 's', 'p', 1, 0, 0, 0, 1, 0, 0, 0, 24, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});

host::judge::JudgeOptions strictOptions() {
    host::judge::JudgeOptions options;
    options.audit = true;
    options.poisonNewWorlds = true;
    return options;
}

class SequenceData : public testing::Test {
protected:
    ~SequenceData() override {
        session_.sequenceSetdown();
        EXPECT_TRUE(host_.audit().clean()) << host_.audit().text();
    }

    /// What a project with this block becomes when it is opened.
    Bytes reopened(const Bytes& block) {
        session_.setSequenceBytes(block);
        const CommandResult result = session_.sequenceResetup();
        EXPECT_EQ(result.code, PF_Err_NONE);
        EXPECT_FALSE(result.threw);
        return session_.sequenceBytes();
    }

    host::judge::JudgedHost host_{strictOptions()};
    host::EffectModule module_ = host::EffectModule::linked(EntryPointFunc, host::SetDown::kNever);
    host::Session session_{host_, module_};
};

TEST_F(SequenceData, OfANewInstanceIsANewRecord) {
    EXPECT_TRUE(session_.sequenceSetup().ok());
    EXPECT_EQ(session_.sequenceBytes(), kNew);
}

TEST_F(SequenceData, FlattenedHasSizeAndVersionTheOtherWayRound) {
    session_.sequenceSetup();
    EXPECT_TRUE(session_.sequenceFlatten().ok());
    EXPECT_EQ(session_.sequenceBytes(), kFlattenedNew);
}

TEST_F(SequenceData, ComesBackFromAProjectByteForByte) {
    session_.sequenceSetup();
    session_.sequenceFlatten();
    EXPECT_TRUE(session_.sequenceResetup().ok());
    EXPECT_EQ(session_.sequenceBytes(), kNew);
}

TEST_F(SequenceData, KeepsItsReservedWords) {
    Bytes flattened = kFlattenedNew;
    Bytes record = kNew;
    for (std::size_t i = 16; i < 24; ++i) {
        flattened[i] = record[i] = static_cast<std::byte>(0xa0 + i);
    }
    EXPECT_EQ(reopened(flattened), record);
    EXPECT_TRUE(session_.sequenceFlatten().ok());
    EXPECT_EQ(session_.sequenceBytes(), flattened);
}

TEST_F(SequenceData, TakesTheFirstBytesOfALongerBlock) {
    Bytes longer = kFlattenedNew;
    longer[20] = std::byte{7};
    longer.resize(1000, std::byte{0xff});
    Bytes record = kNew;
    record[20] = std::byte{7};
    EXPECT_EQ(reopened(longer), record);
}

TEST_F(SequenceData, TakesTheSizeThatAProjectSays) {
    Bytes flattened = kFlattenedNew;
    flattened[12] = std::byte{99};
    Bytes record = kNew;
    record[8] = std::byte{99};
    EXPECT_EQ(reopened(flattened), record);
}

TEST_F(SequenceData, OfNoBlockIsANewRecord) {
    EXPECT_EQ(reopened({}), kNew);
}

TEST_F(SequenceData, ShorterThanARecordIsReplaced) {
    for (std::size_t length = 1; length < SequenceRecord::kBytes; ++length) {
        EXPECT_EQ(reopened(Bytes(kFlattenedNew.begin(), kFlattenedNew.begin() + static_cast<long>(length))),
                  kNew)
            << length;
    }
}

TEST_F(SequenceData, WithAnotherMagicOrVersionIsReplaced) {
    for (const std::size_t at : {0U, 1U, 2U, 3U, 8U, 9U, 10U, 11U}) {
        Bytes damaged = kFlattenedNew;
        damaged[at] ^= std::byte{0x80};
        damaged[17] = std::byte{5};
        EXPECT_EQ(reopened(damaged), kNew) << at;
    }
}

// Its version stands where a flattened record has its size.
TEST_F(SequenceData, ThatWasNeverFlattenedIsReplaced) {
    Bytes record = kNew;
    record[16] = std::byte{1};
    EXPECT_EQ(reopened(record), kNew);
}

TEST_F(SequenceData, BearsAnyBlock) {
    std::mt19937 random(20);
    for (int round = 0; round < 3000; ++round) {
        Bytes block(random() % 60);
        for (std::byte& byte : block) {
            byte = static_cast<std::byte>(random());
        }
        const bool likely = round % 2 == 0;
        for (std::size_t i = 0; likely && i < block.size() && i < 12; ++i) {
            block[i] = kFlattenedNew[i];
        }
        const bool ours = likely && block.size() >= SequenceRecord::kBytes;
        Bytes expected = kNew;
        if (ours) {
            std::copy_n(block.begin() + 12, 4, expected.begin() + 8);
            std::copy_n(block.begin() + 16, 8, expected.begin() + 16);
        }
        ASSERT_EQ(reopened(block), expected) << round;
    }
}

TEST_F(SequenceData, ThatAreTooShortOrMissingCannotBeFlattened) {
    EXPECT_EQ(session_.sequenceFlatten().code, PF_Err_INTERNAL_STRUCT_DAMAGED);
    session_.setSequenceBytes(Bytes(23));
    EXPECT_EQ(session_.sequenceFlatten().code, PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(SequenceData, NeedNotBeThereForASetdown) {
    EXPECT_TRUE(session_.sequenceSetdown().ok());
}

struct FailingCall {
    PF_Cmd command;
    int number;
    std::string call;
    PF_Err code;
};

/// In the order in which the commands make them; the check of a block that fails makes it a foreign one.
TEST_F(SequenceData, EveryFailingHandleCallIsReported) {
    const std::vector<FailingCall> failing = {
        {PF_Cmd_SEQUENCE_SETUP, 1, "host_new_handle", PF_Err_OUT_OF_MEMORY},
        {PF_Cmd_SEQUENCE_SETUP, 2, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_FLATTEN, 1, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_FLATTEN, 2, "host_new_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_FLATTEN, 3, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_RESETUP, 1, "host_lock_handle", PF_Err_NONE},
        {PF_Cmd_SEQUENCE_RESETUP, 2, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_RESETUP, 3, "host_new_handle", PF_Err_OUT_OF_MEMORY},
        {PF_Cmd_SEQUENCE_RESETUP, 4, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
        {PF_Cmd_SEQUENCE_RESETUP, 5, "host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED}};
    Bytes block = kFlattenedNew;
    block[16] = std::byte{9};
    for (const FailingCall& fault : failing) {
        SCOPED_TRACE(std::to_string(fault.command) + ", call " + std::to_string(fault.number));
        session_.setSequenceBytes(block);
        host_.armFaults({.failCall = fault.number, .failCode = PF_Err_INVALID_INDEX});
        const CommandResult result = session_.run(fault.command);
        EXPECT_EQ(host_.failedCallName(), fault.call);
        EXPECT_EQ(result.code, fault.code);
        EXPECT_FALSE(result.threw);
        if (fault.command == PF_Cmd_SEQUENCE_RESETUP && fault.code == PF_Err_NONE) {
            EXPECT_EQ(session_.sequenceBytes(), kNew);
        }
        session_.sequenceSetdown();
        EXPECT_TRUE(host_.audit().clean()) << host_.audit().text();
    }
}

TEST(SequenceRecordForm, WordsStandLowByteFirst) {
    const SequenceRecord record = {
        .size = 0x01020304, .version = 0x05060708, .reserved = {9, 10, 11, 12, 13}};
    std::array<uint8_t, SequenceRecord::kBytes> block{};
    writeInMemory(record, block);
    EXPECT_EQ(block, (std::array<uint8_t, 24>{'q', 'e', 's', 'p', 0, 0,  0,  0,  4,  3, 2, 1,
                                              8,   7,   6,   5,   9, 10, 11, 12, 13, 0, 0, 0}));
    EXPECT_EQ(readInMemory(block), record);
    writeFlattened(record, block);
    EXPECT_EQ(block, (std::array<uint8_t, 24>{'q', 'e', 's', 'p', 1, 0,  0,  0,  8,  7, 6, 5,
                                              4,   3,   2,   1,   9, 10, 11, 12, 13, 0, 0, 0}));
}

} // namespace
} // namespace kovalune::test
