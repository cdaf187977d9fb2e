#pragma once

#include "qtService/database/StaticFont.h"
#include "rest/Server.h"
#include "tests/rest/httpclient.h"

#include <QSharedPointer>
#include <QTemporaryDir>
#include <memory>

class FontManagementService;

// A started service over an empty catalogue of its own, behind a listening server. fontconfig sees the private folder
// "sys" and nothing of the machine.
class Library
{
public:
    Library();
    ~Library();

    // Records as the adder would make them, `prepare` filling what the test is about; they are stored at once.
    QList<int> addFonts(int count, const std::function<void(fms::StaticFont&, int)>& prepare = {});
    // Copies a real font to the private folder that no other program knows, and gives its path.
    QString addFile(const QString& name);
    StaticFontPtr font(int id) const;
    void clear();

    FontManagementService& service() { return *m_service; }
    api::rest::Server& server() { return *m_server; }
    HttpClient& client() { return *m_client; }

private:
    QTemporaryDir m_folder;
    QSharedPointer<FontManagementService> m_service;
    std::unique_ptr<api::rest::Server> m_server;
    std::unique_ptr<HttpClient> m_client;
    int m_serial = 0;
};
