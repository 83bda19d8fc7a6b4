<?xml version="1.0" encoding="UTF-8"?>
<!-- Prints the contents of a Korvella plan that GNOME Planner can import: a line for each task (except the top one;
     named by its path of titles), resource, link and assignment. in-planner.xsl prints the same lines from Planner's
     document. Date-times in the plan must be in the zone of the export. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:k="http://www.korvella.example/namespace/Korvella/v2">
  <xsl:output method="text"/>
  <!-- 1 for a corrected file: its percentages are rounded, and an assignment to a group is one to nobody. -->
  <xsl:param name="corrected" select="0"/>
  <xsl:key name="task" match="k:task" use="@id"/>
  <xsl:key name="resource" match="k:resource" use="@id"/>
  <!-- Finds the child-task element that refers to a task, and so the place of the task in the tree. -->
  <xsl:key name="place" match="k:task[k:type = 'group']/k:child-task" use="@idref"/>

  <xsl:template match="/k:scenario">
    <xsl:value-of select="concat('project|', substring(k:start-date, 1, 19), '&#10;')"/>
    <xsl:variable name="top" select="key('task', k:top-task/@idref)"/>
    <xsl:apply-templates select="$top/k:child-task" mode="task"/>
    <xsl:apply-templates select="$top/k:child-task" mode="link"/>
    <xsl:apply-templates select="key('resource', k:top-resource/@idref)" mode="resource"/>
    <xsl:apply-templates select="$top" mode="assignment"/>
  </xsl:template>

  <xsl:template match="k:child-task" mode="task">
    <xsl:variable name="task" select="key('task', @idref)"/>
    <xsl:text>task|</xsl:text>
    <xsl:apply-templates select="$task" mode="path"/>
    <xsl:value-of select="concat('|', substring($task/k:start-date, 1, 19), '|', substring($task/k:end-date, 1, 19))"/>
    <xsl:value-of select="concat('|duration ', floor($task/k:duration), '|work ',
                                 floor(sum($task/k:effort)), '|done ')"/>
    <xsl:choose>
      <xsl:when test="$task/k:effort &gt; 0 and $task/k:effort-done &gt; 0">
        <xsl:value-of select="floor($task/k:effort-done div $task/k:effort * 100 + $corrected div 2)"/>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="floor(sum($task/k:completion-percentage) * 100 + $corrected div 2)"/></xsl:otherwise>
    </xsl:choose>
    <xsl:if test="$task/k:type = 'milestone'">|milestone</xsl:if>
    <xsl:text>|note </xsl:text>
    <xsl:variable name="note">
      <xsl:for-each select="$task/k:note/k:text/k:p">
        <xsl:for-each select="k:run"><xsl:value-of select="k:lit"/></xsl:for-each>
        <xsl:text> </xsl:text>
      </xsl:for-each>
    </xsl:variable>
    <xsl:value-of select="concat(normalize-space($note), '&#10;')"/>
    <xsl:if test="$task/k:type = 'group'"><xsl:apply-templates select="$task/k:child-task" mode="task"/></xsl:if>
  </xsl:template>

  <xsl:template match="k:child-task" mode="link">
    <xsl:variable name="task" select="key('task', @idref)"/>
    <xsl:for-each select="$task/k:prerequisite-task">
      <xsl:text>link|</xsl:text>
      <xsl:apply-templates select="key('task', @idref)" mode="path"/>
      <xsl:text>|</xsl:text>
      <xsl:apply-templates select="$task" mode="path"/>
      <xsl:value-of select="concat('|', @kind, '|')"/>
      <xsl:choose>
        <!-- Planner reads a percentage as tenths of a minute. -->
        <xsl:when test="k:lead-time/@is-percentage = 'true'"><xsl:value-of select="k:lead-time * 100 * 6"/></xsl:when>
        <xsl:otherwise><xsl:value-of select="sum(k:lead-time)"/></xsl:otherwise>
      </xsl:choose>
      <xsl:text>&#10;</xsl:text>
    </xsl:for-each>
    <xsl:if test="$task/k:type = 'group'"><xsl:apply-templates select="$task/k:child-task" mode="link"/></xsl:if>
  </xsl:template>

  <xsl:template match="k:resource" mode="resource">
    <xsl:if test="k:type != 'Group'">
      <xsl:value-of select="concat('resource|', normalize-space(k:name), '|')"/>
      <xsl:value-of select="concat(substring('work|material|', 1 + 5 * (k:type = 'Material'), 4), '|units ')"/>
      <xsl:value-of select="sum(k:units-available) + not(k:units-available)"/>
      <xsl:value-of select="concat('|', k:email-address, '|', format-number(sum(k:cost-per-hour), '0.00'), '&#10;')"/>
    </xsl:if>
    <xsl:for-each select="k:child-resource[../k:type = 'Group']">
      <xsl:apply-templates select="key('resource', @idref)" mode="resource"/>
    </xsl:for-each>
  </xsl:template>

  <xsl:template match="k:task" mode="assignment">
    <xsl:for-each select="k:assignment[not($corrected and key('resource', @idref)/k:type = 'Group')]">
      <xsl:text>assignment|</xsl:text>
      <xsl:apply-templates select=".." mode="path"/>
      <xsl:value-of select="concat('|', normalize-space(key('resource', @idref)[k:type != 'Group']/k:name), '|')"/>
      <xsl:value-of select="concat(100 * (sum(@units) + not(@units)), '&#10;')"/>
    </xsl:for-each>
    <xsl:for-each select="k:child-task[../k:type = 'group']">
      <xsl:apply-templates select="key('task', @idref)" mode="assignment"/>
    </xsl:for-each>
  </xsl:template>

  <xsl:template match="k:task" mode="path">
    <xsl:if test="not(@id = /k:scenario/k:top-task/@idref)">
      <xsl:apply-templates select="key('place', @id)/.." mode="path"/>
      <xsl:value-of select="concat('/', normalize-space(k:title))"/>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
