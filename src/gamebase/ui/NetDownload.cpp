#include "gamebase/ui/NetDownload.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSaveFile>
#include <QTimer>
#include <QUrl>

namespace vd::gamebase {

bool FetchToFile(const QString& url, const QString& target, int idleMs)
{
    const QUrl address(url, QUrl::TolerantMode);
    if (!address.isValid() || address.scheme().isEmpty() || address.host().isEmpty())
        return false;
    QNetworkAccessManager manager;
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QNetworkReply* reply = manager.get(request);
    QEventLoop loop;
    QTimer idle;
    idle.setSingleShot(true);
    idle.setInterval(idleMs);
    bool writeFailed = false;
    QObject::connect(reply, &QNetworkReply::readyRead, &loop, [&] {
        idle.start();
        const QByteArray chunk = reply->readAll();
        if (file.write(chunk) != chunk.size())
            writeFailed = true;
    });
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(&idle, &QTimer::timeout, reply, &QNetworkReply::abort);
    idle.start();
    loop.exec();
    const QByteArray rest = reply->readAll();
    if (file.write(rest) != rest.size())
        writeFailed = true;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool ok = reply->error() == QNetworkReply::NoError && !writeFailed &&
                    (status == 0 || (status >= 200 && status < 300));
    reply->deleteLater();
    if (!ok) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace vd::gamebase
