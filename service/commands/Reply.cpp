#include "service/commands/Reply.h"

#include "service/xml/Writer.h"

namespace service::commands {

namespace {

std::string documentText(const xml::Node& root)
{
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    xml::append(text, root);
    return text;
}

}  // namespace

std::string successText(const Reply& reply)
{
    xml::Node head("kznapi");
    head.add("response").add("result", "SUCCESS");
    if (!reply.messages.empty()) {
        xml::Node& strings = head.add("messageStrings");
        for (const std::string& message : reply.messages) strings.add("message", message);
    }
    if (!reply.cred.empty()) head.add("securityContext").add("cred", reply.cred);
    std::string text = documentText(head);
    if (reply.payload.children.empty()) return text;

    // A listing can be many megabytes: it is written from where it stands, into the head's last gap.
    constexpr std::string_view kEnd = "</kznapi>";
    text.resize(text.size() - kEnd.size());
    xml::append(text, reply.payload, kEnd);
    return text;
}

std::string failureText(std::string_view reason, std::string_view exceptionID)
{
    xml::Node root("kznapi");
    xml::Node& response = root.add("response");
    response.add("result", "FAILURE");
    response.add("reason", reason);
    response.add("exceptionID", exceptionID);
    return documentText(root);
}

}  // namespace service::commands
