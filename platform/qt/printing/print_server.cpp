#include "platform/qt/printing/print_server.h"

#include "platform/failure.h"

#include <QPrinter>
#include <QPrinterInfo>

#include <cups/cups.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace tessavox {
namespace {

constexpr std::chrono::seconds time_to_answer(2);

/// What `ask` returns or throws, if it does so in time.
template <class Ask> auto answer_of(Ask ask)
{
    std::packaged_task<decltype(ask())()> asking(std::move(ask));
    auto answer = asking.get_future();
    std::thread(std::move(asking)).detach();
    if (answer.wait_for(time_to_answer) != std::future_status::ready)
        throw Failure("the print server doesn't answer");
    return answer.get();
}

QPageLayout ask_for_paper()
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull())
        throw Failure("there is no printer");
    return QPrinter(printer).pageLayout();
}

bool give(const cups_dest_t& printer, const QByteArray& document, const QByteArray& title)
{
    const int options = printer.num_options; // of the user
    const int job = cupsCreateJob(CUPS_HTTP_DEFAULT, printer.name, title, options, printer.options);
    return job != 0
        && cupsStartDocument(
               CUPS_HTTP_DEFAULT, printer.name, job, title, "application/pdf", /*last_document=*/1)
        == HTTP_STATUS_CONTINUE
        && cupsWriteRequestData(
               CUPS_HTTP_DEFAULT, document, static_cast<std::size_t>(document.size()))
        == HTTP_STATUS_CONTINUE
        && cupsFinishDocument(CUPS_HTTP_DEFAULT, printer.name) <= IPP_STATUS_OK_CONFLICTING;
}

} // namespace

QPageLayout default_paper()
{
    return answer_of(ask_for_paper);
}

void print_document(const QByteArray& document, const QString& title)
{
    answer_of([document, title = title.toUtf8()] {
        const std::unique_ptr<cups_dest_t, void (*)(cups_dest_t*)> printer(
            cupsGetNamedDest(CUPS_HTTP_DEFAULT, nullptr, nullptr),
            [](cups_dest_t* one) { cupsFreeDests(1, one); });
        if (!printer || !give(*printer, document, title))
            throw Failure("the printer doesn't take the document");
    });
}

} // namespace tessavox
