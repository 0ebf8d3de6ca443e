#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

#include "service/Context.h"
#include "service/http/Multipart.h"
#include "service/http/Router.h"
#include "service/work/Crew.h"

namespace service::http {

// One request on its way to its answer: from the thread that it came by to who reads, to who writes, as far as it has
// to go. It lives as long as somebody has it to do.
class Errand : public std::enable_shared_from_this<Errand> {
public:
    Errand(const Router& router, Request request, Answerer::Reply reply);

    const Request& request() const { return request_; }

    // The end of it.
    void reply(Response response);

    // Carries out the form of the body or of the target; the same for an upload.
    void form();
    void upload();

    void icon();
    void control();

private:
    using Next = void (Errand::*)();
    using Step = void (Errand::*)(store::Database& database);

    template <class Do>
    void attempt(const Do& work);
    bool isOnTheSpot() const;
    void begin(Next next);
    void readForm();
    void readUpload();
    void meetFaults(Next next);
    void carryOut();
    void look(store::Database& database);
    void prolong(store::Database& database);
    void change(store::Database& database);
    void fetchIcon();
    void find(store::Database& database);
    void obeySoon();
    void obey(store::Database& database);
    work::Crew::Work workOf(Step step);
    void read(Step step, work::Crew::Length length);
    void readAside(Step step, work::Crew::Length length);
    void write(Step step);
    void writeAside(Step step);
    void finish();

    const Router& router_;
    Request request_;
    Answerer::Reply reply_;
    std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    std::thread::id came_ = std::this_thread::get_id();  // by this one
    bool isReplied_ = false;
    MultipartForm parts_{};
    Response response_{};
    store::Session prolonged_{};
    std::optional<Proof> proof_{};
};

}  // namespace service::http
