#pragma once

#include "bench/similarity/FontSurvey.h"

#include <QString>
#include <QStringList>

#include <vector>

// A catalogue with the columns that the extraction reads: faces in turn under the ids 1 to `count`; what is a copy of
// an earlier one differs from it a little.
void writeCatalogue(const QString& path, const std::vector<SurveyedFace>& faces, int count);

// Runs the extraction program as the service does.
void extractCatalogue(const QString& database, const QString& featuresFolder);

// The other helper programs; ends the bench when one fails.
void runHelper(const char* program, const QStringList& arguments);

// A folder as the helper programs take it.
QString hexPath(const QString& path);
