#include "check.h"

#include "output.h"
#include "pipeline.h"

namespace kvt_tool {

namespace {

class CheckJob {
public:
    using Result = std::vector<Finding>;

    explicit CheckJob(const CheckOptions &options) : options_(options) {}

    void work(const Unit &unit, Result &findings) const {
        find(unit, options_.wanted, options_.form, findings);
    }

    void begin(const InputFile &) {
        findings_.begin();
        found_before_ = findings_.count();
    }

    void take(Result &&findings) {
        const std::string kept = findings_.keep(findings);
        if (!options_.quiet) {
            print(kept);
        }
    }

    ExitStatus end(const std::string &, bool) {
        ++inputs_;
        if (findings_.count() == found_before_) {
            return all_well;
        }
        ++inputs_with_findings_;
        return found_problems;
    }

    /// Tells people the numbers, after the findings.
    void sum_up() const {
        if (findings_.count() > 0 && !options_.quiet && options_.form != FindingForm::json) {
            say(std::to_string(findings_.count()) +
                (findings_.count() == 1 ? " finding in " : " findings in ") +
                std::to_string(inputs_with_findings_) + " of " + std::to_string(inputs_) +
                (inputs_ == 1 ? " input\n" : " inputs\n"));
        }
    }

private:
    const CheckOptions &options_;
    FindingsOfInput findings_;
    size_t found_before_ = 0; ///< in the inputs before
    size_t inputs_ = 0;
    size_t inputs_with_findings_ = 0;
};

} // namespace

ExitStatus check(const std::vector<std::string> &inputs, const CheckOptions &options) {
    Progress progress(inputs);
    CheckJob job(options);
    const ExitStatus status = Pipeline(job, options.threads, progress).run(inputs);
    finish_printing();
    job.sum_up();
    return status;
}

ExitStatus list_findings() {
    for (int number = 0; number < KVT_FINDING_KINDS; ++number) {
        const auto kind = static_cast<kvt_finding_kind>(number);
        std::string name = kvt_finding_name(kind);
        name.resize(20, ' ');
        print(name + kvt_finding_meaning(kind) + "\n");
    }
    finish_printing();
    return all_well;
}

} // namespace kvt_tool
