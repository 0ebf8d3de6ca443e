#include "service/http/Errand.h"

#include <utility>

#include "service/base/Refusal.h"
#include "service/commands/Commands.h"
#include "service/commands/Reply.h"
#include "service/control/Control.h"
#include "service/faults/Faults.h"
#include "service/journal/Journal.h"
#include "service/rules/Icons.h"
#include "service/store/Database.h"
#include "service/work/Crew.h"

namespace service::http {

namespace {

using work::Crew;
using Length = Crew::Length;

constexpr std::size_t kSmallBody = std::size_t{8} * 1024;  // takes no time to be read

}  // namespace

Errand::Errand(const Router& router, Request request, Answerer::Reply reply)
    : router_(router), request_(std::move(request)), reply_(std::move(reply))
{
}

// A large body is not read by the thread that reads everybody's requests.
bool Errand::isOnTheSpot() const
{
    return request_.body.size() <= kSmallBody && std::this_thread::get_id() == came_;
}

// The journal learns here what was asked and answered, on whatever thread that is; nobody needs the request any more.
void Errand::reply(Response response)
{
    isReplied_ = true;
    router_.note(std::move(request_), response, begun_);
    reply_(std::move(response));
}

void Errand::finish()
{
    reply(std::move(response_));
}

// Whatever goes wrong with one request, the others go on.
template <class Do>
void Errand::attempt(const Do& work)
{
    try {
        work();
    } catch (const std::exception& error) {
        if (isReplied_) return;
        response_ = {};
        response_.status = 500;
        response_.body = commands::errorText(error);
        finish();
    }
}

void Errand::form()
{
    begin(&Errand::readForm);
}

void Errand::upload()
{
    begin(&Errand::readUpload);
}

void Errand::begin(Next next)
{
    if (isOnTheSpot() || router_.crew_ == nullptr) return (this->*next)();
    router_.crew_->read(
        [self = shared_from_this(), next](store::Database&) { self->attempt([&] { ((*self).*next)(); }); },
        Length::brief);
}

Crew::Work Errand::workOf(Step step)
{
    return [self = shared_from_this(), step](store::Database& database) {
        self->attempt([&] { ((*self).*step)(database); });
    };
}

void Errand::read(Step step, Length length)
{
    if (!isOnTheSpot() || router_.crew_ == nullptr) return readAside(step, length);
    router_.crew_->readNow(workOf(step), length);
}

void Errand::readAside(Step step, Length length)
{
    if (router_.crew_ == nullptr) return (this->*step)(router_.database_);
    router_.crew_->read(workOf(step), length);
}

void Errand::write(Step step)
{
    if (!isOnTheSpot() || router_.crew_ == nullptr) return writeAside(step);
    router_.crew_->writeNow(workOf(step));
}

void Errand::writeAside(Step step)
{
    if (router_.crew_ == nullptr) return (this->*step)(router_.database_);
    router_.crew_->write(workOf(step));
}

// The form comes in the body of a post, or after the "?" of a get.
void Errand::readForm()
{
    try {
        parts_.form =
            Form::fromUrlEncoded(request_.isPost() ? std::string_view(request_.body) : queryOf(request_.target));
    } catch (const Refusal& failure) {
        response_.body = commands::failureText(failure.what(), failure.exceptionID());
        return finish();
    }
    response_.operation = {parts_.form.text("cmd"), parts_.form.text("task")};
    meetFaults(&Errand::carryOut);
}

void Errand::readUpload()
{
    try {
        parts_ = readMultipart(request_.contentType, request_.body);
    } catch (const Refusal& failure) {
        response_.body = commands::failureText(failure.what(), failure.exceptionID());
        return finish();
    }
    response_.operation = {parts_.form.text("cmd"), parts_.form.text("task")};
    meetFaults(&Errand::carryOut);
}

// A fault may strike the call, and may stand in the place of carrying it out. The calls are counted in the order in
// which they came.
void Errand::meetFaults(Next next)
{
    const auto meet = [self = shared_from_this(), next](store::Database& database) {
        Response& response = self->response_;
        response.fault = self->router_.faults_->strike(database, response.operation);
        if (!response.fault || !faults::isInstead(response.fault->kind)) return ((*self).*next)();
        response.body = commands::failureText(response.fault->reason, response.fault->exceptionID);
        self->finish();
    };
    if (router_.faults_ == nullptr || !router_.faults_->areSet()) return (this->*next)();
    if (router_.crew_ == nullptr) return meet(router_.database_);
    router_.crew_->write(
        [self = shared_from_this(), meet](store::Database& database) { self->attempt([&] { meet(database); }); });
}

void Errand::carryOut()
{
    const commands::Way way = commands::wayOf(parts_.form);
    if (way.access == commands::Access::writes || router_.crew_ == nullptr) return write(&Errand::change);
    if (way.pace == commands::Pace::slow) return readAside(&Errand::look, Length::brief);
    read(&Errand::look, way.pace == commands::Pace::open ? Length::open : Length::brief);
}

// What becomes of it where nothing can be changed; a sign-in learns there whether the password is right.
void Errand::look(store::Database& database)
{
    commands::Finding finding = commands::findOut(database, router_.settings_, parts_.form);
    proof_ = std::move(finding.proof);
    response_.user = std::move(finding.caller);
    if (finding.text.empty()) return write(&Errand::change);
    response_.body = std::move(finding.text);
    prolonged_ = std::move(finding.prolonged);
    if (prolonged_.cred.empty()) return finish();
    write(&Errand::prolong);
}

void Errand::prolong(store::Database& database)
{
    try {
        commands::prolong(database, prolonged_);
    } catch (const std::exception& error) {
        response_.body = commands::errorText(error);
    }
    finish();
}

void Errand::change(store::Database& database)
{
    response_.body =
        commands::answerForm(database, router_.settings_, parts_.form, parts_.hasFile ? &parts_.file : nullptr,
                             proof_ ? &*proof_ : nullptr, &response_.user);
    finish();
}

// A picture may be large.
void Errand::icon()
{
    response_.operation.command = "icon";
    meetFaults(&Errand::fetchIcon);
}

void Errand::fetchIcon()
{
    readAside(&Errand::find, Length::brief);
}

// It has no reply around it, so the status tells what became of it; the body of a failure says why.
void Errand::find(store::Database& database)
{
    try {
        const store::Snapshot snapshot(database);
        const std::string_view name = pathOf(request_.target).substr(rules::kIconPath.size());
        const Form query = Form::fromUrlEncoded(queryOf(request_.target));
        response_.body =
            commands::iconContent(database, router_.settings_, std::string(name), query.text("cred"), &response_.user);
        response_.contentType = rules::pictureType(response_.body);
    } catch (const Refusal& failure) {
        const bool missing = failure.exceptionID() == std::string_view(exceptionid::kNoSuchObject);
        response_.status = missing ? 404 : 403;
        response_.body = commands::failureText(failure.what(), failure.exceptionID());
    }
    finish();
}

// What was answered before is in the journal by then. Nobody waits for that but who asks.
void Errand::control()
{
    if (router_.journal_ == nullptr || !control::Control::asksForJournal(request_)) return obeySoon();
    if (router_.crew_ == nullptr) {
        router_.journal_->settle();
        return obeySoon();
    }
    router_.journal_->whenSettled([self = shared_from_this()] { self->attempt([&] { self->obeySoon(); }); });
}

void Errand::obeySoon()
{
    if (control::Control::onlyReads(request_)) return readAside(&Errand::obey, Length::open);
    writeAside(&Errand::obey);
}

void Errand::obey(store::Database& database)
{
    response_ = router_.control_->answer(database, request_);
    finish();
}

}  // namespace service::http
