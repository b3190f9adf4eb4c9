#include "app/NotchRequests.h"

#include "app/RequestRouter.h"
#include "notch/NotchController.h"
#include "notch/NotchViewModel.h"

namespace ostrelle {

namespace {

RequestAnswer open(NotchController &controller, const QJsonObject &request)
{
    const QString tool = request[u"tool"].toString();
    const auto module = moduleFromRawValue(tool);
    if (!tool.isEmpty() && !module)
        return RequestAnswer::wrongUsage(QStringLiteral("open: unknown tool %1").arg(tool));
    controller.present(module, NotchController::Focus::Take, NotchController::Opening::Explicit,
                       ActivationToken{request[u"token"].toString()});
    return RequestAnswer::done();
}

} // namespace

void addNotchRequests(RequestRouter &router, NotchController &controller, std::function<QJsonObject()> status,
                      std::function<void()> quit)
{
    router.add(QStringLiteral("open"), [&controller](const QJsonObject &request) { return open(controller, request); });
    router.add(QStringLiteral("close"), [&controller](const QJsonObject &) {
        controller.dismiss();
        return RequestAnswer::done();
    });
    router.add(QStringLiteral("toggle"), [&controller](const QJsonObject &) {
        if (controller.viewModel().phase() == Phase::Expanded)
            controller.dismiss();
        else
            controller.present({}, NotchController::Focus::Take, NotchController::Opening::Explicit);
        return RequestAnswer::done();
    });
    router.add(QStringLiteral("status"),
               [status = std::move(status)](const QJsonObject &) { return RequestAnswer::done(status()); });
    // The shortest question: whoever asks measures how long the main thread was busy.
    router.add(QStringLiteral("ping"), [](const QJsonObject &) { return RequestAnswer::done(); });
    router.add(QStringLiteral("quit"), [&controller, quit = std::move(quit)](const QJsonObject &) {
        QMetaObject::invokeMethod(&controller, quit, Qt::QueuedConnection);
        return RequestAnswer::done();
    });
}

void addWelcomeRequest(RequestRouter &router, const std::function<void()> &open)
{
    router.add(QStringLiteral("welcome"), [open](const QJsonObject &) {
        open();
        return RequestAnswer::done();
    });
}

} // namespace ostrelle
