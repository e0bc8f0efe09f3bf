#include "options/FileReports.h"

#include "context/AppContext.h"
#include "platform/MessageBoxes.h"
#include "platform/SettingsStore.h"

#include <QFileInfo>

namespace velmora {

namespace {

const QString CRLF = QStringLiteral("\r\n");

} // namespace

void ShowFileProblem(AppContext& ctx, const FileProblem& problem) {
    if (!problem)
        return;
    QString title;
    QString text;
    if (problem.kind == FileProblem::NotWritten) {
        title = QStringLiteral("File Not Saved");
        text = QStringLiteral("The file could not be saved:") + QString(15, ' ') + CRLF +
               problem.file + CRLF + CRLF + QStringLiteral("Reason: ") + problem.reason + CRLF +
               CRLF + QStringLiteral("The file was left as it was before.") + CRLF + CRLF;
    } else {
        title = QStringLiteral("File Could Not Be Read");
        text = problem.file + QStringLiteral(" could not be read");
        if (!problem.keptAs.isEmpty())
            text += QStringLiteral("; it was kept as ") + QFileInfo(problem.keptAs).fileName() +
                    QStringLiteral(" beside it.");
        else
            text +=
                QStringLiteral(" nor put aside; it is left alone and nothing is saved over it.");
        text += CRLF + CRLF + QStringLiteral("Reason: ") + problem.reason + CRLF + CRLF +
                QStringLiteral("What it held is not used.") + CRLF + CRLF;
    }
    ctx.svc.boxes->show(ctx.shell.AppTitle + QStringLiteral(" - ") + title, text, BoxIcon::Critical,
                        BoxButtons::Ok);
}

void ReportSettingsProblems(AppContext& ctx) {
    ctx.svc.settings->onProblem = [&ctx](const FileProblem& problem) {
        ShowFileProblem(ctx, problem);
    };
}

void StopReportingSettingsProblems(AppContext& ctx) {
    ctx.svc.settings->onProblem = nullptr;
}

} // namespace velmora
