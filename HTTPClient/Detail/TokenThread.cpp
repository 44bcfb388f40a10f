#include "HTTPClient/Detail/TokenThread.h"

#include "HTTPClient/Detail/HTTPText.h"
#include "HTTPClient/Detail/Process.h"
#include "HTTPClient/Detail/Session.h"
#include "HTTPClient/Detail/TransferError.h"
#include "HTTPClient/Detail/TransferThread.h"

#include <algorithm>
#include <exception>
#include <new>
#include <string>

namespace Qx::Detail {

namespace {

// The reason is a single line, whatever message the source throws.
TransferError noToken(const char* what) {
    std::string reason = std::string("there is no token: ") + what;
    std::replace_if(reason.begin(), reason.end(), isControl, ' ');
    return {FailureKind::REFUSED, reason};
}

void answer(Session& session, TransferThread& transfers, const TransferThread::TokenQuestion& question) {
    try {
        const std::string token = session.rules.options().tokenSource(question.refusedToken);
        transfers.answerTokenQuestion(session, question, token);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        transfers.answerTokenQuestion(session, question, noToken(error.what()));
    } catch (...) {
        transfers.answerTokenQuestion(session, question, noToken("its source threw an unknown exception"));
    }
}

// Returns false once the session is closed.
bool answerNext(Session& session, TransferThread& transfers) {
    try {
        const auto question = transfers.nextTokenQuestion(session);
        if (question)
            answer(session, transfers, *question);
        return question.has_value();
    } catch (const std::bad_alloc&) {
        transfers.failTokenQuestion(session);
        return true;
    }
}

void answerAll(Session& session, TransferThread& transfers) {
    nameThisThread("orvane-token");
    while (answerNext(session, transfers)) {
    }
}

} // namespace

TokenThread::TokenThread(Session& session, TransferThread& transfers) {
    if (session.rules.options().tokenSource)
        thread_ = startThread([&] { answerAll(session, transfers); });
}

TokenThread::~TokenThread() {
    if (thread_.joinable())
        thread_.join();
}

} // namespace Qx::Detail
