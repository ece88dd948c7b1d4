// One marine computation, known by the path of its residual file; its other
// files lie in the same folder: the force and moment files eff_*.dat, the
// body description <case>_body_param.dat, the motion files Mvt_<body>.dat and
// the actuator-disk table eff_AD.dat.
#pragma once

#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "marine/actuator_disks.h"
#include "marine/body_object.h"
#include "marine/component_file.h"
#include "marine/custom_plots.h"
#include "marine/extra_quantities.h"
#include "marine/marine_vars_provider.h"
#include "marine/res_file_marine.h"

namespace marine {

class ProjectMonitorMarine {
 public:
  // Counters the scripts keep per residual, force and moment quantity.
  static constexpr std::size_t kCurrentIterationSlots =
      kResidualNames.size() + kForceNames.size() + kMomentNames.size();

  explicit ProjectMonitorMarine(std::string residualPath);
  ProjectMonitorMarine(const ProjectMonitorMarine&) = delete;
  ProjectMonitorMarine& operator=(const ProjectMonitorMarine&) = delete;

  // Loads the computation's structure (its bodies, the residual header and
  // the columns of every file), printing its progress; the rows come with
  // the refreshes. False when the residual file, the force file eff_Fx.dat
  // or the residual header cannot be read (the scripts are told which part
  // is bad); a later refresh tries again.
  bool load();

  struct Refresh {
    bool succeeded = false;  // loaded, and every file read could be read
    bool changed = false;    // something new was read, or the run was reloaded
    // The run held was dropped for a new one on disk (new creation stamp, or
    // a rewritten residual, force or moment file): its histories start over.
    bool newRun = false;
    // Files that were read before and have disappeared since: what was read
    // from them stays.
    std::vector<std::string> lostFiles;
  };
  // Reads what the solver appended to every file since the last refresh; a
  // new run on disk (new creation stamp, or a rewritten residual, force or
  // moment file) is loaded afresh first.
  Refresh refresh();

  const std::string& path() const { return path_; }
  const std::string& folder() const { return folder_; }
  bool loaded() const { return loaded_; }
  bool unsteady() const { return unsteady_; }
  ResFileMarine& resFile() { return resFile_; }
  const ResFileMarine& resFile() const { return resFile_; }
  // The bodies in use: those of the body description, or the fallback
  // bodies of eff_Fx.dat when it describes none.
  std::vector<BodyObject>& bodies() { return usingFallback_ ? fallbackBodies_ : trueBodies_; }
  const std::vector<BodyObject>& bodies() const {
    return usingFallback_ ? fallbackBodies_ : trueBodies_;
  }
  // The bodies in use that move (have a motion file), in body order.
  std::vector<const BodyObject*> motionBodies() const;
  const ActuatorDiskTable& actuatorDisks() const { return actuatorDisks_; }
  // The 9 force files, then the 9 moment files.
  const std::vector<ComponentFile>& componentFiles() const { return componentFiles_; }
  std::vector<int>& currentIterations() { return currentIterations_; }
  const std::string& creationStamp() const { return stampText_; }
  ExtraQuantities& extraQuantities() { return extraQuantities_; }
  CustomPlots& customPlots() { return customPlots_; }
  const formula::MarineVarsProvider& variables() const { return variables_; }

 private:
  bool detectBodies();
  void readBodyBlocks(const std::string& path, std::vector<BodyObject>& bodies, bool needsMode,
                      const char* label);
  bool readStructure();
  // Forgets the run on display: the next load reads the files from their top.
  void startOver();
  // Prints the "Different solver run detected" message and answers true when
  // the residual file's creation stamp is not the displayed run's.
  bool newRunOnDisk();
  // The file readers of the computation as it is now structured.
  void listFiles();
  // Reads every listed file; false (and nothing more read) at the first
  // rewritten file whose rewrite means a new run.
  bool readFiles(Refresh& result);
  // Brings what is computed from the histories up to date.
  void updateDerived(bool fromScratch);

  // One file of the computation, read at every refresh.
  struct ListedFile {
    const fileformat::GrowingFile* file;
    bool rewriteMeansNewRun;  // rather than a new content of that file alone
    std::function<fileformat::Update()> read;
  };

  std::string path_;
  std::string folder_;
  ResFileMarine resFile_;
  std::vector<BodyObject> trueBodies_;
  std::vector<BodyObject> fallbackBodies_;
  std::vector<std::size_t> motionBodyIndexes_;  // into bodies()
  bool usingFallback_ = false;
  bool unsteady_ = false;
  bool modeKnown_ = false;
  std::vector<ComponentFile> componentFiles_;  // the 9 force files, then the 9 moment files
  std::vector<ListedFile> files_;
  std::vector<int> currentIterations_;
  ActuatorDiskTable actuatorDisks_;
  std::string stampText_;
  std::optional<std::time_t> stampTime_;
  bool loaded_ = false;
  ExtraQuantities extraQuantities_;
  formula::MarineVarsProvider variables_{*this};
  CustomPlots customPlots_{variables_};
};

}  // namespace marine
