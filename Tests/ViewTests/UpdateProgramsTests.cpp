#include "Karto/Platform/Linux/ClockAlarm.h"
#include "Karto/Platform/Linux/PosixFileSystem.h"
#include "Karto/Platform/Linux/QtDescriptorWatch.h"
#include "Karto/Platform/Linux/Updates/FetchProgram.h"
#include "Karto/Platform/Linux/Updates/PackageInstaller.h"
#include "Support/CannedServer.h"
#include "Support/TemporaryFolder.h"

#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace karto::testing {

namespace {

using ::testing::HasSubstr;

// What came of one fetch, waited for.
struct Fetched {
    Fetched(const std::string& address, std::uint64_t from) {
        QEventLoop loop;
        FetchProgram fetcher(KARTO_PROGRAM);
        const auto fetch = fetcher.fetch({.address = address, .offset = from},
                                         {.onBegin = [&](std::uint64_t first) { offset = first; },
                                          .onBytes = [&](std::string_view more) { bytes += more; },
                                          .onEnd =
                                              [&](const std::optional<std::string>& why) {
                                                  problem = why;
                                                  loop.quit();
                                              }});
        loop.exec();
    }

    std::optional<std::uint64_t> offset;
    std::string bytes;
    std::optional<std::string> problem;
};

// The stand-in for pkexec that a test's own folder holds.
class PackageInstallerTest : public ::testing::Test {
protected:
    PackageInstallerTest() { qputenv("PATH", folder.path().c_str()); }

    void TearDown() override { qputenv("PATH", path); }

    InstallOutcome install(const std::optional<std::string>& script) {
        if (script) {
            writeFile(folder.path() / "pkexec", "#!/bin/sh\n" + *script);
            std::filesystem::permissions(folder.path() / "pkexec", std::filesystem::perms::owner_all);
        }
        QEventLoop loop;
        InstallOutcome outcome;
        const auto installation = installer.install("/cache/karto.deb", [&](const InstallOutcome& how) {
            outcome = how;
            loop.quit();
        });
        loop.exec();
        return outcome;
    }

    QByteArray path = qgetenv("PATH");
    TemporaryFolder folder;
    PosixFileSystem files;
    PackageInstaller installer{
        files, {.program = "/usr/bin/karto", .installedFiles = folder.path() / "karto.list"}, [] {}};
};

} // namespace

TEST(FetchProgram, fetchesFromTheOffsetOrFromTheStart) {
    const std::string body = std::string(200'000, 'x') + "end";
    bool goesOn = true;
    std::string head;
    const CannedServer server([&](const std::string& request) {
        head = request;
        if (!goesOn || !request.contains("Range: bytes=200000-")) {
            return okAnswer(body);
        }
        return std::string("HTTP/1.1 206 Partial Content\r\nContent-Range: bytes 200000-200002/200003\r\n"
                           "Content-Length: 3\r\nConnection: close\r\n\r\nend");
    });
    const auto address = "http://" + server.authority() + "/karto.deb";
    const Fetched whole(address, 0);
    EXPECT_EQ(whole.problem, std::nullopt);
    EXPECT_EQ(whole.offset, 0U);
    EXPECT_EQ(whole.bytes, body);
    EXPECT_THAT(head, HasSubstr("GET /karto.deb HTTP/1.1\r\n"));
    EXPECT_THAT(head, HasSubstr("Accept-Encoding: identity\r\n"));
    const Fetched rest(address, 200'000);
    EXPECT_EQ(rest.offset, 200'000U);
    EXPECT_EQ(rest.bytes, "end");
    goesOn = false;
    const Fetched again(address, 200'000);
    EXPECT_EQ(again.offset, 0U);
    EXPECT_EQ(again.bytes, body);
}

TEST(FetchProgram, whatTheServerDoesWrongIsSaidInWords) {
    struct Case {
        std::string answer;
        std::string problem;
    };

    Case now;
    const CannedServer server([&](const std::string& /*head*/) { return now.answer; });
    const auto redirection = [](const std::string& to) {
        return Case{.answer = "HTTP/1.1 302 Found\r\nLocation: " + to + "\r\nContent-Length: 0\r\n\r\n",
                    .problem = "the server points to another address, which is not followed"};
    };
    for (const auto& one : {redirection("http://" + server.authority() + "/other"),
                            redirection("https://karto.example/"),
                            redirection("file:///etc/passwd"),
                            {.answer = "HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\ngone",
                             .problem = "the server answers with status 404"},
                            {.answer = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nthe",
                             .problem = "the server ended the connection"}}) {
        now = one;
        const Fetched fetched("http://" + server.authority() + "/", 0);
        ASSERT_TRUE(fetched.problem) << one.answer;
        EXPECT_EQ(*fetched.problem, one.problem);
    }
    EXPECT_EQ(server.requests(), 5);
    now.answer = "nothing that a secure server says";
    EXPECT_EQ(Fetched("https://" + server.authority() + "/", 0).problem,
              "no safe connection to the server can be made");
}

TEST(FetchProgram, aServerThatVouchesForItselfIsRefused) {
    const TemporaryFolder folder;
    const auto file = [&](const char* name) { return QString::fromStdString(folder.path() / name); };
    QProcess::execute("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-batch", "-subj",
                                  "/CN=localhost", "-keyout", file("key"), "-out", file("certificate")});
    QFile key(file("key"));
    ASSERT_TRUE(key.open(QFile::ReadOnly));
    auto secrets = QSslConfiguration::defaultConfiguration();
    secrets.setLocalCertificateChain(QSslCertificate::fromPath(file("certificate")));
    secrets.setPrivateKey(QSslKey(&key, QSsl::Rsa));
    QSslServer server;
    server.setSslConfiguration(secrets);
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_EQ(
        Fetched(fmt::format("https://localhost:{}/", server.serverPort()), 0).problem,
        "the server cannot prove that it is the right one — nobody whom this computer trusts vouches for it");
}

TEST(FetchProgram, whatCannotBeReachedIsSaidInWords) {
    std::string nowhere;
    {
        const CannedServer server([](const std::string& /*head*/) { return ""; });
        nowhere = server.authority();
    }
    EXPECT_EQ(Fetched("http://" + nowhere + "/", 0).problem, "the server refuses connections");
    EXPECT_EQ(Fetched("http://karto.invalid/", 0).problem, "the name of the server was not found");
}

TEST(FetchProgram, anEndlessAnswerEndsWithTheRegistration) {
    const CannedServer server([](const std::string& /*head*/) {
        return "HTTP/1.1 200 OK\r\n\r\n" + std::string(std::size_t{64} << 20U, 'x');
    });
    QEventLoop loop;
    FetchProgram fetcher(KARTO_PROGRAM);
    std::size_t heard = 0;
    Registration fetch;
    fetch = fetcher.fetch({.address = "http://" + server.authority() + "/", .offset = 0},
                          {.onBegin = [](std::uint64_t /*offset*/) {},
                           .onBytes =
                               [&](std::string_view bytes) {
                                   heard += bytes.size();
                                   fetch.reset();
                                   loop.quit();
                               },
                           .onEnd = [](const std::optional<std::string>& /*problem*/) { ADD_FAILURE(); }});
    loop.exec();
    EXPECT_LE(heard, std::size_t{1} << 20U);
}

TEST_F(PackageInstallerTest, theInstallersEndIsToldApart) {
    using Kind = InstallOutcome::Kind;
    EXPECT_EQ(install(std::nullopt).kind, Kind::unavailable);
    EXPECT_EQ(install("exit 126").kind, Kind::refused);
    EXPECT_EQ(install("echo 'Error executing command as another user: Not authorized' >&2; exit 127").kind,
              Kind::refused);
    EXPECT_EQ(install("echo 'No authentication agent found.' >&2; exit 127").kind, Kind::unavailable);
    EXPECT_EQ(install("echo noise; echo 'E: held broken packages' >&2; exit 100").problem,
              "the package installer says \"E: held broken packages\"");
    EXPECT_EQ(install("exit 1").problem, "the package installer ended with status 1");
    const auto words = (folder.path() / "words").string();
    EXPECT_EQ(install("echo \"$@\" > " + words).kind, Kind::installed);
    EXPECT_EQ(readFile(words), "--disable-internal-agent apt-get install --yes --no-remove -q -o "
                               "DPkg::Lock::Timeout=60 /cache/karto.deb\n");
}

TEST_F(PackageInstallerTest, aProgramIsReplacedWhenItsPackageListsIt) {
    EXPECT_FALSE(installer.replacesProgram());
    writeFile(folder.path() / "karto.list", "/.\n/usr/bin/karto2\n/opt/usr/bin/karto\n");
    EXPECT_FALSE(installer.replacesProgram());
    writeFile(folder.path() / "karto.list", "/.\n/usr/bin\n/usr/bin/karto\n/usr/share\n");
    EXPECT_TRUE(installer.replacesProgram());
}

TEST(ClockAlarm, goesOffOnceAtItsTimeUnlessItWasCancelled) {
    using namespace std::chrono_literals;
    QtDescriptorWatch descriptors;
    ClockAlarm alarm(descriptors);
    QEventLoop loop;
    std::vector<std::string> rung;
    const auto now = std::chrono::system_clock::now();
    const auto distant = alarm.at(now + 24h, [&] { rung.emplace_back("distant"); });
    auto cancelled = alarm.at(now, [&] { rung.emplace_back("cancelled"); });
    const auto past =
        alarm.at(std::chrono::system_clock::time_point{} - 1h, [&] { rung.emplace_back("past"); });
    const auto soon = alarm.at(now + 20ms, [&] {
        rung.emplace_back("soon");
        loop.quit();
    });
    cancelled.reset();
    loop.exec();
    EXPECT_THAT(rung, ::testing::ElementsAre("past", "soon"));
}

} // namespace karto::testing
