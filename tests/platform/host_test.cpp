// host_test.cpp - one host gives way to another.
// SPDX-License-Identifier: Apache-2.0
#include "platform/host.h"

#include "hosts/standalone/parameters.h"
#include "platform/ComMsgMgr.h"
#include "platform/HUTEnv.h"
#include "support/host_messages.h"

namespace {

using memdata::Host;
using memdata::HostMessage;
using memdata::setHost;
using memdata::testing::CapturedMessages;

// A host of its own name with parameters of its own.
class NamedHost : public Host {
public:
    explicit NamedHost(std::string name) : name_(std::move(name)) {}
    void message(const HostMessage& message) override { heard += std::to_string(message.number) + " "; }
    memdata::StandaloneParameters& parameters() override { return parameters_; }
    std::string fullProduct() const override { return name_ + " product"; }
    std::string fullBuild() const override { return name_ + " build"; }
    std::string firstNotice() const override { return name_ + " first"; }
    std::string secondNotice() const override { return name_ + " second"; }
    std::string date() const override { return name_ + " date"; }
    std::string temporaryDirectory() const override { return "/" + name_; }

    std::string heard;

private:
    std::string name_;
    memdata::StandaloneParameters parameters_;
};

struct HostSwap : ::testing::Test {
    NamedHost first{"first"}, second{"second"};
    void TearDown() override { setHost(nullptr); }
};

} // namespace

TEST_F(HostSwap, TheDefaultHostIsInForceAtFirst) {
    EXPECT_EQ(&memdata::host(), &memdata::defaultHost());
}

TEST_F(HostSwap, SetHostGivesBackTheOneBefore) {
    EXPECT_EQ(setHost(&first), &memdata::defaultHost());
    EXPECT_EQ(setHost(&second), &first);
    EXPECT_EQ(setHost(nullptr), &second);
    EXPECT_EQ(&memdata::host(), &memdata::defaultHost());
}

TEST_F(HostSwap, MessagesGoToTheHostInForce) {
    setHost(&first);
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-203@%s", "tag");
    setHost(&second);
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-209@%s", "name");
    setHost(&first);
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-290@");
    EXPECT_EQ(first.heard, "203 290 ");
    EXPECT_EQ(second.heard, "209 ");
}

TEST_F(HostSwap, EnvironmentTextsComeFromTheHostInForce) {
    setHost(&second);
    EXPECT_EQ(HUTEnv::getFullProductStr(), "second product");
    EXPECT_EQ(HUTEnv::getFullBuildStr(), "second build");
    EXPECT_EQ(HUTEnv::getCopyrightStr(), "second first");
    EXPECT_EQ(HUTEnv::getOtherCopyrightStr(), "second second");
    EXPECT_EQ(HUTEnv::getDATE(), "second date");
    EXPECT_EQ(HUTEnv::getZHRTmpDir(), "/second");
}

TEST_F(HostSwap, EachHostHasTheLibrarysParametersAndValuesOfItsOwn) {
    setHost(&first);
    setHost(&second);
    EXPECT_EQ(first.parameters().list().size(), second.parameters().list().size());
    first.parameters().setValue("memdata.debugLanefill", true);
    EXPECT_FALSE(HPAParamMgr::getParamMgr().getValueAsBool("memdata.debugLanefill"));
    setHost(&first);
    EXPECT_TRUE(HPAParamMgr::getParamMgr().getValueAsBool("memdata.debugLanefill"));
}

TEST_F(HostSwap, ACaptureEndsWithItsBlockAndMayBeNested) {
    CapturedMessages outer;
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-203@%s", "outer");
    {
        CapturedMessages inner;
        ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kWARNING, "@28-300@%s%s", "inner", "a.bmm");
        EXPECT_EQ(inner.text(), "WARNING 28-300 inner, a.bmm\n");
    }
    ComMsgMgr::sendMsg::eval("memdata", 0, "@28-290@");
    EXPECT_EQ(outer.text(), "ERROR 28-203 outer\n0 28-290\n");
}
