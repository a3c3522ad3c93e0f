// karto-fetch ADDRESS OFFSET: writes the bytes behind an address to standard output.
//
// First comes a line with the number of the first byte, OFFSET or 0, then the bytes. What goes wrong is told
// in one line to standard error, and the status is 1. It follows no redirection and ends with the program
// that started it.

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslError>
#include <QUrl>

#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <string>

namespace {

constexpr int usageStatus = 2;
constexpr int ok = 200;
constexpr int partialContent = 206;
constexpr int notSatisfiable = 416;
// Bounds the memory: the rest waits in the network.
constexpr qint64 bufferBytes = 65'536;

bool writeAll(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const auto written = ::write(STDOUT_FILENO, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.sliced(written < 0 ? 0 : written);
    }
    return true;
}

// The first thing that is wrong with the server's certificate; none when there was no talk of one.
QString problemOf(const QList<QSslError>& doubts) {
    if (doubts.isEmpty()) {
        return "no safe connection to the server can be made";
    }
    const QString unproven = "the server cannot prove that it is the right one — ";
    switch (doubts.front().error()) {
    case QSslError::CertificateExpired:
        return unproven + "its certificate has expired; is the computer's clock right?";
    case QSslError::CertificateNotYetValid:
        return unproven + "its certificate is not valid yet; is the computer's clock right?";
    case QSslError::HostNameMismatch: return unproven + "its certificate is that of another one";
    default: return unproven + "nobody whom this computer trusts vouches for it";
    }
}

QString problemOf(const QNetworkReply& reply, const QList<QSslError>& doubts) {
    switch (reply.error()) {
    case QNetworkReply::HostNotFoundError: return "the name of the server was not found";
    case QNetworkReply::ConnectionRefusedError: return "the server refuses connections";
    case QNetworkReply::RemoteHostClosedError: return "the server ended the connection";
    case QNetworkReply::SslHandshakeFailedError: return problemOf(doubts);
    default: return "the server cannot be reached — " + reply.errorString();
    }
}

class Fetch {
public:
    Fetch(QUrl address, qint64 offset)
        : address_(std::move(address))
        , offset_(offset) {
        // Nobody is in between on the own machine.
        if (address_.scheme() == "http") {
            network_.setProxy(QNetworkProxy::NoProxy);
        }
        start();
    }

private:
    void start() {
        QNetworkRequest request(address_);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setHeader(QNetworkRequest::UserAgentHeader, "Karto");
        // The bytes as they are signed.
        request.setRawHeader("Accept-Encoding", "identity");
        if (offset_ > 0) {
            request.setRawHeader("Range", "bytes=" + QByteArray::number(offset_) + '-');
        }
        reply_.reset(network_.get(request));
        reply_->setReadBufferSize(bufferBytes);
        QObject::connect(reply_.get(), &QNetworkReply::readyRead, [this] { read(); });
        QObject::connect(reply_.get(), &QNetworkReply::sslErrors,
                         [this](const QList<QSslError>& errors) { doubts_ = errors; });
        QObject::connect(reply_.get(), &QNetworkReply::finished, [this] { finish(); });
    }

    [[nodiscard]] int status() const {
        return reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    [[nodiscard]] bool hasContent() const { return status() == ok || status() == partialContent; }

    void read() {
        if (hasContent() && !(begin() && writeAll(reply_->readAll()))) {
            end(QString("the program that fetches updates cannot write"));
        }
    }

    bool begin() {
        return std::exchange(hasBegun_, true) ||
               writeAll(QByteArray::number(status() == partialContent ? firstByte() : 0) + '\n');
    }

    // "bytes FIRST-LAST/ALL"
    [[nodiscard]] qint64 firstByte() const {
        const auto range = reply_->rawHeader("Content-Range");
        const auto first = range.mid(range.indexOf(' ') + 1);
        return first.left(first.indexOf('-')).toLongLong();
    }

    void finish() {
        // What was stored before is more than the server has.
        if (status() == notSatisfiable && offset_ > 0) {
            offset_ = 0;
            reply_.release()->deleteLater();
            return start();
        }
        if (status() != 0 && !hasContent()) {
            const bool isRedirection = status() / 100 == 3;
            return end(isRedirection ? QString("the server points to another address, which is not followed")
                                     : QString("the server answers with status %1").arg(status()));
        }
        if (reply_->error() != QNetworkReply::NoError) {
            return end(problemOf(*reply_, doubts_));
        }
        read();
        end({});
    }

    void end(const QString& problem) {
        reply_->disconnect();
        if (!problem.isEmpty()) {
            std::fputs(qPrintable(problem.simplified() + '\n'), stderr);
        }
        QCoreApplication::exit(problem.isEmpty() ? 0 : 1);
    }

    QUrl address_;
    qint64 offset_;
    QNetworkAccessManager network_;
    std::unique_ptr<QNetworkReply> reply_;
    QList<QSslError> doubts_;
    bool hasBegun_ = false;
};

} // namespace

int main(int argumentCount, char** arguments) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const QCoreApplication application(argumentCount, arguments);
    const auto words = QCoreApplication::arguments();
    if (words.size() != 3) {
        std::fputs("usage: karto-fetch ADDRESS OFFSET\n", stderr);
        return usageStatus;
    }
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    const Fetch fetch(QUrl(words[1], QUrl::StrictMode), words[2].toLongLong());
    return QCoreApplication::exec();
}
