// What the interface has besides operations: handles, control, the message loop.
#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "capi/Call.h"
#include "pvutil/MessageLoop.h"

using namespace capi;

namespace capi {

namespace {

/// Never destroyed: a host may give its handles back as late as in what it does at exit, behind the library's own. With
/// no handle alive it holds no memory.
template <typename All>
All& lasting()
{
    alignas(All) static std::array<std::byte, sizeof(All)> place;
    static All& all = *std::construct_at(reinterpret_cast<All*>(place.data()));
    return all;
}

}  // namespace

Handles<pvw_client, CWapiClient>& clients()
{
    return lasting<Handles<pvw_client, CWapiClient>>();
}

Handles<pvw_result, Memory>& results()
{
    return lasting<Handles<pvw_result, Memory>>();
}

namespace {

int newClient(pvw_client** client, const auto& made)
{
    if (client == nullptr) return 0;
    *client = nullptr;
    return contained([&] {
        *client = clients().add(made());
        return 1;
    });
}

pvw_bytes bytesOf(std::string_view text)
{
    return {text.data(), text.size()};
}

template <typename Text>
std::vector<pvw_bytes> bytesOf(std::span<const Text> texts)
{
    std::vector<pvw_bytes> bytes;
    for (const std::string_view text : texts) bytes.push_back(bytesOf(text));
    return bytes;
}

int told(pvw_exchange_listener listener, void* context, const CWapiClient::Exchange& exchange)
{
    return contained([&] {
        const std::vector<pvw_bytes> headers = bytesOf(exchange.headers);
        const std::vector<pvw_bytes> body = bytesOf(exchange.body);
        pvw_exchange copy{};
        copy.size = sizeof copy;
        copy.method = exchange.method;
        copy.url = bytesOf(exchange.url);
        copy.headers = headers.data();
        copy.headerCount = headers.size();
        copy.body = body.data();
        copy.bodyCount = body.size();
        copy.status = exchange.status;
        copy.reply = bytesOf(exchange.reply);
        copy.milliseconds = exchange.milliseconds;
        return listener(context, &copy);
    });
}

}  // namespace
}  // namespace capi

unsigned int PVW_CALL pvw_abi_version(void)
{
    return PVW_ABI_VERSION;
}

const char* PVW_CALL pvw_version(void)
{
    return CWapiClient::version();
}

int PVW_CALL pvw_set_log(int maximumLevel)
{
    return contained([&] {
        CWapiClient::setLog(maximumLevel);
        return 1;
    });
}

int PVW_CALL pvw_xml_text(pvw_text text, pvw_text* xml, pvw_result** result)
{
    return brought(result, [&](Memory& memory) {
        expectPlaces(xml);
        return memory.give(into(xml, memory.of(kzn::pvutil::stringex::XmlText(textOf(text)))));
    });
}

int PVW_CALL pvw_result_free(pvw_result* result)
{
    return results().take(result) ? 1 : 0;
}

int PVW_CALL pvw_message_loop_fd(void)
{
    return kzn::pvutil::MessageLoopFd();
}

int PVW_CALL pvw_dispatch_pending_messages(void)
{
    return contained([] { return kzn::pvutil::DispatchPendingMessages(); });
}

int PVW_CALL pvw_client_new(pvw_text baseURL, pvw_client** client)
{
    return newClient(client, [&] { return std::make_shared<CWapiClient>(textOf(baseURL)); });
}

int PVW_CALL pvw_client_copy(pvw_client* client, pvw_client** copy)
{
    return newClient(copy, [&] {
        const std::shared_ptr<CWapiClient> live = clients().find(client);
        if (!live) throw Refused();
        return std::make_shared<CWapiClient>(*live);
    });
}

int PVW_CALL pvw_client_free(pvw_client* client)
{
    return contained([&] { return clients().take(client) ? 1 : 0; });
}

int PVW_CALL pvw_cancel(pvw_client* client)
{
    return asked(client, [](CWapiClient& live) {
        live.cancel();
        return 1;
    });
}

int PVW_CALL pvw_set_deadline(pvw_client* client, unsigned int milliseconds)
{
    return asked(client, [&](CWapiClient& live) {
        live.setDeadline(milliseconds);
        return 1;
    });
}

int PVW_CALL pvw_on_refresh(pvw_client* client, pvw_refresh_listener listener, void* context)
{
    return asked(client, [&](CWapiClient& live) {
        CWapiClient::RefreshListener told;
        if (listener != nullptr) told = [listener, context](int result) { listener(context, result); };
        live.onRefresh(std::move(told));
        return 1;
    });
}

int PVW_CALL pvw_on_transfer_progress(pvw_client* client, pvw_transfer_progress progress, void* context)
{
    return asked(client, [&](CWapiClient& live) {
        CWapiClient::TransferProgress told;
        if (progress != nullptr) {
            told = [progress, context](std::size_t done, std::size_t whole) {
                return progress(context, done, whole) != 0;
            };
        }
        live.onTransferProgress(std::move(told));
        return 1;
    });
}

int PVW_CALL pvw_on_exchange(pvw_client* client, pvw_exchange_listener listener, void* context)
{
    return asked(client, [&](CWapiClient& live) {
        CWapiClient::ExchangeListener listening;
        if (listener != nullptr) {
            listening = [listener, context](const CWapiClient::Exchange& exchange) {
                return told(listener, context, exchange) != 0;
            };
        }
        live.onExchange(std::move(listening));
        return 1;
    });
}

int PVW_CALL pvw_on_timer(pvw_client* client, unsigned int timerID)
{
    return asked(client, [&](CWapiClient& live) {
        live.OnTimer(timerID);
        return 1;
    });
}
