#include "service/service.h"

#include "service/account_routes.h"
#include "service/database.h"
#include "service/dictionary.h"
#include "service/feedback_route.h"
#include "service/metering.h"
#include "service/plan_routes.h"
#include "service/plans.h"
#include "service/pronunciation.h"
#include "service/recogniser_pool.h"
#include "service/text_transform.h"
#include "service/transcribe_route.h"
#include "service/transform_route.h"
#include "service/translator.h"

namespace quillo::service {

struct Service::Parts {
  Parts(const ServiceOptions& options, Clock clock, Mailbox mailbox,
        decltype(HttpServer::Settings::served) served)
      : database(options.database),
        plans(options.freeDailyMinutes, options.freeMonthlyCharacters),
        accounts(database, clock, std::move(mailbox), options.accounts),
        metering(database, plans, clock),
        recognisers(options.recognisers, options.waitingRecordings, pronunciation),
        transform(dictionaries, pronunciation, translator),
        server({options.port, anonymousKey(), options.maximumUploadBytes, std::move(served)}) {
    addAccountRoutes(server, accounts);
    addTranscribeRoute(server, {accounts, metering, plans, dictionaries, recognisers});
    addTransformRoute(server, {accounts, metering, transform});
    addPlanRoutes(server, {accounts, metering, plans});
    addFeedbackRoute(server, {accounts, database, clock});
  }

  Database database;
  PlanCatalogue plans;
  Accounts accounts;
  Metering metering;
  Pronunciation pronunciation;
  Dictionaries dictionaries;
  Translator translator;
  RecogniserPool recognisers;
  TextTransform transform;
  HttpServer server;  // last, so that it stops before what its routes use
};

Service::Service(const ServiceOptions& options, Clock clock, Mailbox mailbox,
                 decltype(HttpServer::Settings::served) served)
    : parts_(std::make_unique<Parts>(options, std::move(clock), std::move(mailbox),
                                     std::move(served))) {}

Service::~Service() = default;

std::string Service::anonymousKey() {
  return QUILLO_DEVELOPMENT_ANON_KEY;
}
int Service::port() const {
  return parts_->server.port();
}
void Service::start() {
  parts_->server.start();
}
void Service::stop() {
  parts_->server.stop();
}

}  // namespace quillo::service
